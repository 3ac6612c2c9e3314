#pragma once

#include "platform/base/Descriptor.h"
#include "platform/base/String.h"
#include "platform/movie/engine/FFmpeg.h"
#include "platform/movie/engine/Patience.h"

namespace caddis::movie {

/// One plain file as FFmpeg's only input. It is read rather than mapped: a movie that is cut short meanwhile
/// must not end the process, and most of it is never looked at.
class FileInput {
public:
    FileInput(const String& path, const Patience& patience);
    FileInput(const FileInput&) = delete;
    FileInput& operator=(const FileInput&) = delete;
    ~FileInput();

    /// Null when the file can't be read.
    AVIOContext* context() const { return m_context; }

private:
    static int read(void* input, std::uint8_t* buffer, int size);
    static std::int64_t seek(void* input, std::int64_t offset, int whence);

    Descriptor m_file;
    std::int64_t m_size = 0;
    std::int64_t m_position = 0;
    const Patience& m_patience;
    AVIOContext* m_context = nullptr;
};

} // namespace caddis::movie
