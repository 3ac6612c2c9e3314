#include "platform/preview/IconTheme.h"

#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"

#include <algorithm>
#include <limits>

namespace caddis {

namespace {

constexpr std::string_view ThemeGroup = "Icon Theme";
constexpr std::size_t MostThemes = 16;
constexpr std::size_t MostDirectories = 4096;
constexpr std::uint64_t LargestIndex = 4 << 20; // Bytes.

String below(const String& folder, std::string_view name)
{
    return stringByAppendingPathComponent(folder, String::fromUtf8(name));
}

// Smaller is better: as large as wanted or little larger, then what can be had in any size, then what is too
// small.
int distance(int size, bool isScalable, int side)
{
    constexpr int AnySize = 1 << 20;
    if (isScalable)
        return AnySize;
    return size >= side ? size - side : 2 * AnySize - size;
}

} // namespace

IconTheme::IconTheme(std::span<const String> dataFolders, const std::string& name)
{
    for (const String& folder : dataFolders)
        m_folders.push_back(stringByAppendingPathComponent(folder, u"icons"));
    std::vector<std::string> names { name };
    for (std::size_t next = 0; next < names.size() && next < MostThemes; ++next) {
        const auto index = indexOf(names[next]);
        if (!index)
            continue;
        m_themes.push_back(read(*index, names[next]));
        for (const std::string_view parent : index->list(ThemeGroup, "Inherits", ',')) {
            if (std::ranges::find(names, parent) == names.end())
                names.emplace_back(parent);
        }
    }
    if (std::ranges::find(names, "hicolor") == names.end()) {
        if (const auto index = indexOf("hicolor"))
            m_themes.push_back(read(*index, "hicolor"));
    }
}

std::optional<KeyFile> IconTheme::indexOf(const std::string& name) const
{
    for (const String& folder : m_folders) {
        const String path = below(folder, name + "/index.theme");
        if (FileSystem::sizeOfFile(path) > LargestIndex)
            continue;
        if (const auto text = FileSystem::contentsOfFile(path))
            return KeyFile(text->chars());
    }
    return std::nullopt;
}

// A theme may be spread over all folders, each with any of its directories.
IconTheme::Theme IconTheme::read(const KeyFile& index, const std::string& name) const
{
    Theme theme;
    for (const std::string_view directory : index.list(ThemeGroup, "Directories", ',')) {
        for (const String& folder : m_folders) {
            const String path = below(below(folder, name), directory);
            if (theme.size() < MostDirectories && FileSystem::isDirectory(path))
                theme.push_back(
                    { path, index.number(directory, "Size") * std::max(1, index.number(directory, "Scale")),
                        index.value(directory, "Type") == "Scalable" });
        }
    }
    return theme;
}

std::optional<String> IconTheme::pathOfIcon(const std::string& icon, int side) const
{
    for (const Theme& theme : m_themes) {
        std::optional<String> best;
        int least = std::numeric_limits<int>::max();
        for (const Directory& directory : theme) {
            for (const char* const extension : { ".png", ".svg" }) {
                const int far = distance(directory.size, directory.isScalable, side);
                const String path = below(directory.path, icon + extension);
                if (far < least && FileSystem::exists(path)) {
                    best = path;
                    least = far;
                }
            }
        }
        if (best)
            return best;
    }
    return std::nullopt;
}

} // namespace caddis
