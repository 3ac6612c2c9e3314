#include "markup/FeedSettings.h"

#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"

namespace caddis {

namespace {

// From the folder of the running program where that is bin, in a build tree too, or libexec/caddis; else
// where the library was installed.
std::optional<String> installedStyleSheet()
{
    constexpr std::u16string_view Name = u"caddis.feeds.stylesheet.css";
    const auto program = FileSystem::canonicalPath(u"/proc/self/exe"_s);
    const String folder = stringByDeletingLastPathComponent(program.value_or(String()));
    for (const String& share : { stringByAppendingPathComponent(folder, u"../share/caddis"),
             stringByAppendingPathComponent(folder, u"../../share/caddis"),
             String::fromUtf8(CADDIS_INSTALLED_SHARE) }) {
        if (auto path = FileSystem::canonicalPath(stringByAppendingPathComponent(share, Name)))
            return path;
    }
    return std::nullopt;
}

} // namespace

const FeedSettings& FeedSettings::standard()
{
    static const FeedSettings settings { .linkableFeedStyleSheet = installedStyleSheet() };
    return settings;
}

} // namespace caddis
