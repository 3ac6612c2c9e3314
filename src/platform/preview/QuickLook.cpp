#include "platform/preview/QuickLook.h"

#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/SharedMIMEDatabase.h"
#include "platform/files/XDGFolders.h"
#include "platform/preview/AsciiCase.h"
#include "platform/preview/EmbeddedThumbnail.h"
#include "platform/preview/OwnReaders.h"
#include "platform/preview/ThumbnailCache.h"

#include <algorithm>

namespace caddis {

namespace {

using std::chrono::milliseconds;

// One of our own readers may have taken nine seconds; ten are the most that a file may take.
constexpr milliseconds LatestReading { 4'000 };
constexpr milliseconds LatestProgramEnd { 9'500 };
constexpr milliseconds MostForProgram { 8'000 };
constexpr milliseconds LeastForProgram { 500 };
constexpr double LargestSide = 16'384; // Pixels.

class Stopwatch {
public:
    milliseconds elapsed() const
    {
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - m_start);
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

String typeOf(const String& path)
{
    if (FileSystem::isDirectory(path))
        return u"inode/directory"_s;
    const auto& database = SharedMIMEDatabase::system();
    const auto type = database.typeForExtension(String::fromUtf8(lowered(pathExtension(path).utf8())));
    return type.value_or(u"application/octet-stream"_s);
}

// The name that the settings of the usual toolkits give it.
std::string iconThemeName()
{
    const auto read = [](const char16_t* file, const char* group, const char* key) {
        const auto text
            = FileSystem::contentsOfFile(stringByAppendingPathComponent(XDGFolders::config(), file));
        return std::string(KeyFile(text ? text->chars() : "").value(group, key).value_or(""));
    };
    for (const char16_t* const file : { u"gtk-4.0/settings.ini", u"gtk-3.0/settings.ini" }) {
        if (std::string name = read(file, "Settings", "gtk-icon-theme-name"); !name.empty())
            return name;
    }
    const std::string name = read(u"kdeglobals", "Icons", "Theme");
    return name.empty() ? "Adwaita" : name;
}

std::optional<Bitmap> firstPicture(const std::vector<Data>& files, Size maximum)
{
    for (const Data& file : files) {
        if (auto bitmap = ownPicture(file, maximum))
            return bitmap;
    }
    return std::nullopt;
}

} // namespace

QuickLook::QuickLook(Places places)
    : m_places(std::move(places))
    , m_thumbnailers(m_places.dataFolders)
    , m_icons(m_places.dataFolders)
    , m_theme(m_places.dataFolders, m_places.iconTheme)
{
}

const QuickLook& QuickLook::system()
{
    static const QuickLook quickLook({ XDGFolders::data(), XDGFolders::cache(), iconThemeName() });
    return quickLook;
}

std::optional<Bitmap> QuickLook::thumbnail(const String& path, Size maximum, bool iconMode) const
{
    maximum = { std::min(maximum.width, LargestSide), std::min(maximum.height, LargestSide) };
    if (!(maximum.width >= 1) || !(maximum.height >= 1) || !FileSystem::exists(path))
        return std::nullopt;
    const Stopwatch stopwatch;
    if (auto bitmap = ownPicture(path, maximum))
        return bitmap;
    if (stopwatch.elapsed() < LatestReading) {
        if (auto bitmap = firstPicture(embeddedThumbnails(path), maximum))
            return bitmap;
    }
    const double side = std::max(maximum.width, maximum.height);
    if (const auto cached = cachedThumbnail(m_places.cacheFolder, path, side)) {
        if (auto bitmap = ownPicture(*cached, maximum))
            return bitmap;
    }
    const String type = typeOf(path);
    const auto left = std::min(MostForProgram, LatestProgramEnd - stopwatch.elapsed());
    if (left >= LeastForProgram) {
        const auto smallest = std::min(maximum.width, maximum.height);
        if (auto bitmap = m_thumbnailers.thumbnail(path, type, static_cast<std::uint32_t>(smallest), left))
            return bitmap;
    }
    return iconMode ? icon(type, maximum) : std::nullopt;
}

std::optional<Bitmap> QuickLook::icon(const String& type, Size maximum) const
{
    const auto side = static_cast<int>(std::min(maximum.width, maximum.height));
    for (const std::string& name : m_icons.namesForType(type)) {
        const auto path = m_theme.pathOfIcon(name, side);
        if (auto bitmap = path ? ownPicture(*path, maximum) : std::nullopt)
            return bitmap;
    }
    return std::nullopt;
}

std::optional<Bitmap> QLThumbnailImageCreate(const URL& url, Size maximum, QLThumbnailOptions options)
{
    const auto path = url.isFileURL() ? url.path() : std::nullopt;
    return path ? QuickLook::system().thumbnail(*path, maximum, options.iconMode) : std::nullopt;
}

} // namespace caddis
