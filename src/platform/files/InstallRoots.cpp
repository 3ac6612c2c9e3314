#include "platform/files/InstallRoots.h"

#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"

#include <array>
#include <cstdlib>
#include <filesystem>

namespace caddis::InstallRoots {

namespace {

String environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? String::fromUtf8(value) : String();
}

String home()
{
    const String folder = environment("HOME");
    return folder.isEmpty() ? u"/nonexistent"_s : folder;
}

String userData()
{
    const String folder = environment("XDG_DATA_HOME");
    return stringByAppendingPathComponent(
        folder.isEmpty() ? stringByAppendingPathComponent(home(), u".local/share") : folder, u"caddis");
}

String programFolder()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return String::fromUtf8(program.parent_path().string());
}

// The build tree keeps programs in bin/, an installation keeps them in libexec/caddis/.
String libraryFolder()
{
    const String above = stringByDeletingLastPathComponent(programFolder());
    String near = stringByAppendingPathComponent(above, u"lib/caddis");
    if (FileSystem::isDirectory(near))
        return near;
    return stringByAppendingPathComponent(stringByDeletingLastPathComponent(above), u"lib/caddis");
}

// An installation keeps it in libexec/caddis/, with the helper but not with the programs in bin/.
String tool()
{
    String chosen = environment("CADDIS_MDIMPORT");
    if (!chosen.isEmpty())
        return chosen;
    String near = stringByAppendingPathComponent(programFolder(), u"mdimport");
    if (FileSystem::exists(near))
        return near;
    const String above = stringByDeletingLastPathComponent(programFolder());
    return stringByAppendingPathComponent(above, u"libexec/caddis/mdimport");
}

struct Place {
    String logical;
    String (*real)();
};

std::array<Place, 9> places()
{
    return { {
        { u"/System/Library/Spotlight"_s,
            [] { return stringByAppendingPathComponent(libraryFolder(), u"Spotlight"); } },
        { u"/Library/Spotlight"_s, [] { return u"/usr/local/lib/caddis/Spotlight"_s; } },
        { u"/System/Library/Filters"_s,
            [] { return stringByAppendingPathComponent(libraryFolder(), u"Filters"); } },
        { u"/Library/Filters"_s, [] { return u"/usr/local/lib/caddis/Filters"_s; } },
        { userLibraryDirectory(), [] { return stringByAppendingPathComponent(userData(), u"Library"); } },
        { stringByAppendingPathComponent(home(), u"Applications"),
            [] { return stringByAppendingPathComponent(userData(), u"Applications"); } },
        { u"/Applications"_s,
            [] { return stringByAppendingPathComponent(libraryFolder(), u"Applications"); } },
        { u"/Developer/Applications"_s, [] { return u"/usr/local/lib/caddis/Applications"_s; } },
        { u"/usr/bin/mdimport"_s, tool },
    } };
}

bool isAtOrBelow(std::u16string_view path, std::u16string_view folder)
{
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == u'/');
}

} // namespace

String stringByExpandingTilde(const String& path)
{
    return isAtOrBelow(path, u"~") ? format(u"%@%@", home(), path.substringFrom(1)) : path;
}

String userLibraryDirectory() { return stringByAppendingPathComponent(home(), u"Library"); }

String real(const String& logicalPath)
{
    String path = stringByExpandingTilde(logicalPath);
    const String root = environment("CADDIS_ROOT");
    if (!root.isEmpty())
        return path.view().starts_with(u'/') ? stringByAppendingPathComponent(root, path) : path;
    for (const auto& [logical, place] : places()) {
        if (isAtOrBelow(path, logical))
            return stringByAppendingPathComponent(place(), path.view().substr(logical.length()));
    }
    return path;
}

} // namespace caddis::InstallRoots
