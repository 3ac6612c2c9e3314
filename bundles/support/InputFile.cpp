#include "bundles/support/InputFile.h"
#include "platform/base/LeftOut.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis::bundles {

namespace {

struct Descriptor {
    int number;

    explicit Descriptor(const std::string& path)
        : number(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) // a pipe must not block
    {
    }
    ~Descriptor()
    {
        if (number >= 0)
            close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
};

} // namespace

std::optional<std::string> readFile(const std::string& path, std::size_t limit)
{
    const Descriptor file(path);
    struct stat status { };
    if (file.number < 0 || fstat(file.number, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    if (limit >= MaximumFile && static_cast<std::size_t>(status.st_size) > limit)
        noteLeftOut(limit == MaximumFile ? u"the file beyond 64 MiB" : u"the end of a very large file");
    std::string bytes(std::min(static_cast<std::size_t>(status.st_size), limit), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = read(file.number, bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

std::string fileName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

} // namespace caddis::bundles
