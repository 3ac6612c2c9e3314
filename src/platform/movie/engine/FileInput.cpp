#include "platform/movie/engine/FileInput.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace caddis::movie {

namespace {

constexpr int BufferSize = 64 * 1024;

} // namespace

// O_NONBLOCK: a pipe without a writer must not hold us here.
FileInput::FileInput(const String& path, const Patience& patience)
    : m_file(open(path.utf8().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    , m_patience(patience)
{
    struct stat status = {};
    if (!m_file.isOpen() || fstat(m_file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return;
    m_size = status.st_size;
    auto* const buffer = static_cast<std::uint8_t*>(av_malloc(BufferSize));
    m_context = avio_alloc_context(buffer, BufferSize, 0, this, read, nullptr, seek);
    if (!m_context)
        av_free(buffer);
}

FileInput::~FileInput()
{
    if (m_context)
        av_freep(static_cast<void*>(&m_context->buffer)); // It may have been replaced by another one.
    avio_context_free(&m_context);
}

int FileInput::read(void* input, std::uint8_t* buffer, int size)
{
    auto& self = *static_cast<FileInput*>(input);
    if (self.m_patience.isOver())
        return AVERROR_EXIT;
    const ssize_t count
        = pread(self.m_file.number(), buffer, static_cast<std::size_t>(size), self.m_position);
    if (count < 0)
        return AVERROR(errno);
    self.m_position += count;
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
}

std::int64_t FileInput::seek(void* input, std::int64_t offset, int whence)
{
    auto& self = *static_cast<FileInput*>(input);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return self.m_size;
    case SEEK_SET:
        break;
    case SEEK_CUR:
        offset += self.m_position;
        break;
    case SEEK_END:
        offset += self.m_size;
        break;
    default:
        return AVERROR(EINVAL);
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    return self.m_position = offset;
}

} // namespace caddis::movie
