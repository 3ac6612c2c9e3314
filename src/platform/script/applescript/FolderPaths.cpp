#include "platform/script/applescript/FolderPaths.h"

#include "platform/base/Format.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace caddis::applescript {

namespace {

std::string homeFolder()
{
    if (const char* home = std::getenv("HOME"); home && home[0] == '/')
        return home;
    const passwd* user = getpwuid(getuid());
    return user ? user->pw_dir : "/";
}

std::string fromEnvironment(const char* name, const std::string& fallback)
{
    const char* value = std::getenv(name);
    return value && value[0] == '/' ? value : fallback;
}

// Folders of the user by the freedesktop names.
std::string userFolder(Symbol folder)
{
    std::string home = homeFolder();
    switch (folder) {
    case Symbol::HomeFolder:
        return home;
    case Symbol::Desktop:
    case Symbol::DesktopFolder:
        return fromEnvironment("XDG_DESKTOP_DIR", home + "/Desktop");
    case Symbol::DocumentsFolder:
        return fromEnvironment("XDG_DOCUMENTS_DIR", home + "/Documents");
    case Symbol::DownloadsFolder:
        return fromEnvironment("XDG_DOWNLOAD_DIR", home + "/Downloads");
    case Symbol::MusicFolder:
        return fromEnvironment("XDG_MUSIC_DIR", home + "/Music");
    case Symbol::PicturesFolder:
        return fromEnvironment("XDG_PICTURES_DIR", home + "/Pictures");
    case Symbol::MoviesFolder:
        return fromEnvironment("XDG_VIDEOS_DIR", home + "/Videos");
    case Symbol::PublicFolder:
        return fromEnvironment("XDG_PUBLICSHARE_DIR", home + "/Public");
    case Symbol::LibraryFolder:
    case Symbol::ApplicationSupport:
        return fromEnvironment("XDG_DATA_HOME", home + "/.local/share");
    case Symbol::PreferencesFolder:
        return fromEnvironment("XDG_CONFIG_HOME", home + "/.config");
    case Symbol::ScriptsFolder:
        return fromEnvironment("XDG_DATA_HOME", home + "/.local/share") + "/scripts";
    case Symbol::TrashFolder:
    case Symbol::Trash:
        return fromEnvironment("XDG_DATA_HOME", home + "/.local/share") + "/Trash/files";
    default:
        return {};
    }
}

std::string commonFolder(Symbol folder, Symbol domain)
{
    switch (folder) {
    case Symbol::TemporaryItems:
        return fromEnvironment("TMPDIR", "/tmp");
    case Symbol::StartupDisk:
        return "/";
    case Symbol::SystemFolder:
        return "/usr";
    case Symbol::ApplicationsFolder:
        return "/usr/share/applications";
    case Symbol::LibraryFolder:
    case Symbol::ApplicationSupport:
        return domain == Symbol::UserDomain ? std::string() : "/usr/share";
    case Symbol::PreferencesFolder:
        return domain == Symbol::UserDomain ? std::string() : "/etc";
    default:
        return {};
    }
}

} // namespace

std::optional<String> folderPath(Symbol folder, Symbol domain)
{
    std::string path = commonFolder(folder, domain);
    if (path.empty())
        path = userFolder(folder);
    if (path.empty())
        return std::nullopt;
    return String::fromUtf8(path.ends_with('/') ? path : path + '/');
}

} // namespace caddis::applescript
