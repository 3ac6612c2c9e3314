#include "platform/files/SecurityScopedAccess.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace caddis {

namespace {

bool isReadable(int descriptor) { return faccessat(descriptor, "", R_OK, AT_EMPTY_PATH | AT_EACCESS) == 0; }

} // namespace

std::optional<SecurityScopedAccess> SecurityScopedAccess::start(const URL& url)
{
    const auto path = url.isFileURL() ? url.path() : std::nullopt;
    if (!path)
        return std::nullopt;
    const std::string file = path->utf8();
    int descriptor = open(file.c_str(), O_PATH | O_CLOEXEC);
    if (descriptor < 0 && errno == ENOENT)
        descriptor = open(file.substr(0, file.rfind('/') + 1).c_str(), O_PATH | O_CLOEXEC | O_DIRECTORY);
    if (descriptor < 0)
        return std::nullopt;
    SecurityScopedAccess access(descriptor);
    return isReadable(descriptor) ? std::optional(std::move(access)) : std::nullopt;
}

SecurityScopedAccess::SecurityScopedAccess(SecurityScopedAccess&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

SecurityScopedAccess& SecurityScopedAccess::operator=(SecurityScopedAccess&& other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

SecurityScopedAccess::~SecurityScopedAccess()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

} // namespace caddis
