#include "platform/ipc/RuntimeDirectory.h"

#include "platform/base/Log.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/un.h>

namespace caddis {

namespace {

// The sticky bit tells those who clean runtime directories to leave the file alone.
constexpr mode_t PrivateFile = S_ISVTX | S_IRUSR | S_IWUSR;
constexpr const char* LockSuffix = ".lock";
constexpr std::size_t LongestSocketPath = sizeof(sockaddr_un::sun_path) - 1;

void logRefusal(const std::string& path, const char* reason)
{
    log(u"%s: %s", std::string_view(path), reason);
}

// Everything in the directory may be trusted because only this user can have put it there.
Descriptor openPrivateDirectory(const std::string& path)
{
    mkdir(path.c_str(), S_IRWXU);
    Descriptor directory(open(path.c_str(), O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!directory.isOpen() || fstat(directory.number(), &status) != 0) {
        logRefusal(path, std::strerror(errno));
        return {};
    }
    if (status.st_uid != geteuid() || (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        logRefusal(path, "not a private directory of this user");
        return {};
    }
    return directory;
}

} // namespace

std::string runtimeDirectoryPath()
{
    if (const char* own = std::getenv("CADDIS_RUNTIME_DIR"); own && *own)
        return own;
    if (const char* user = std::getenv("XDG_RUNTIME_DIR"); user && *user)
        return std::string(user) + "/caddis";
    return "/tmp/caddis-" + std::to_string(geteuid());
}

bool isRegistrableName(const String& name)
{
    using namespace std::string_view_literals;
    return !name.isEmpty() && name[0] != u'.'
        && name.view().find_first_of(u"/\0"sv) == std::u16string_view::npos;
}

std::optional<std::string> socketPathForName(const String& name)
{
    if (!isRegistrableName(name))
        return std::nullopt;
    return runtimeDirectoryPath() + '/' + name.utf8();
}

std::optional<std::string> scratchPathForName(const String& name)
{
    const auto path = socketPathForName(name);
    return path ? std::optional(*path + ".scratch") : std::nullopt;
}

void removeFilesOfName(const String& name)
{
    const auto path = socketPathForName(name);
    if (!path)
        return;
    std::error_code ignored;
    unlink(path->c_str());
    unlink((*path + LockSuffix).c_str());
    std::filesystem::remove_all(*scratchPathForName(name), ignored);
}

std::optional<NameLock> NameLock::acquire(const String& name)
{
    const auto path = socketPathForName(name);
    if (!path)
        return std::nullopt;
    NameLock held;
    const std::string directoryPath = runtimeDirectoryPath();
    held.m_socketPath = *path;
    held.m_temporaryPath = directoryPath + "/." + name.utf8() + '.' + std::to_string(getpid());
    if (held.m_temporaryPath.size() > LongestSocketPath) {
        logRefusal(held.m_temporaryPath, "too long for a socket");
        return std::nullopt;
    }
    const Descriptor directory = openPrivateDirectory(directoryPath);
    if (!directory.isOpen())
        return std::nullopt;
    const std::string file = name.utf8() + LockSuffix;
    held.m_lock = Descriptor(
        openat(directory.number(), file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, PrivateFile));
    struct flock wholeFile = {};
    wholeFile.l_type = F_WRLCK;
    if (!held.m_lock.isOpen() || fcntl(held.m_lock.number(), F_SETLK, &wholeFile) != 0)
        return std::nullopt;
    fchmod(held.m_lock.number(), PrivateFile);
    return held;
}

bool NameLock::publish() const
{
    if (chmod(m_temporaryPath.c_str(), PrivateFile) == 0
        && rename(m_temporaryPath.c_str(), m_socketPath.c_str()) == 0)
        return true;
    logRefusal(m_socketPath, std::strerror(errno));
    return false;
}

} // namespace caddis
