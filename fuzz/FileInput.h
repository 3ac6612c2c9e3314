#pragma once

#include "platform/base/Log.h"

#include <cstdint>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace caddis {

/// The path of a file in memory that holds the input, for readers that take files. What they log is dropped.
inline String fileWith(const std::uint8_t* data, std::size_t size)
{
    static const int file = [] {
        setLogSink([](const String&) {});
        return memfd_create("input", MFD_CLOEXEC);
    }();
    const bool isWritten
        = ftruncate(file, 0) == 0 && pwrite(file, data, size, 0) == static_cast<ssize_t>(size);
    return isWritten ? format(u"/proc/self/fd/%d", file) : String();
}

} // namespace caddis
