#include "platform/files/MappedFile.h"

#include "platform/files/FaultGuard.h"
#include "platform/files/FileSystem.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis::MappedFile {

namespace {

std::optional<Data> map(int file, std::size_t size)
{
    void* address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (address == MAP_FAILED)
        return std::nullopt;
    FaultGuard::add(address, size);
    const auto unmap = [size](const void* mapped) {
        FaultGuard::remove(mapped);
        munmap(const_cast<void*>(mapped), size);
    };
    return Data::keptBy(std::shared_ptr<const void>(address, unmap), address, size);
}

} // namespace

std::optional<Data> open(const String& path)
{
    const auto native = fileSystemRepresentation(path);
    const int file = native ? ::open(native->c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK) : -1;
    if (file < 0)
        return std::nullopt;
    struct stat status { };
    const bool isPlain = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    const auto size = static_cast<std::size_t>(status.st_size);
    auto mapped = isPlain && size >= LeastMappedSize ? map(file, size) : std::nullopt;
    close(file);
    if (mapped || !isPlain)
        return mapped;
    return FileSystem::contentsOfFile(path); // Short, or on a file system that can't map.
}

void discard(std::string_view bytes)
{
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto start = reinterpret_cast<std::uintptr_t>(bytes.data());
    const std::uintptr_t first = (start + page - 1) / page * page;
    const std::uintptr_t behind = (start + bytes.size()) / page * page;
    if (first < behind && FaultGuard::contains(bytes.data()))
        madvise(reinterpret_cast<void*>(first), behind - first, MADV_DONTNEED);
}

} // namespace caddis::MappedFile
