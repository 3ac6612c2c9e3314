#include "foundation/FileExtensions.h"

#include "platform/base/MutableString.h"

#include <algorithm>
#include <span>
#include <vector>

namespace caddis {

namespace {

// The components that are left when "." and ".." are resolved; ".." at the root stays there.
std::vector<std::u16string_view> resolvedComponents(std::u16string_view path)
{
    std::vector<std::u16string_view> components;
    while (!path.empty()) {
        const std::u16string_view component = path.substr(0, path.find(u'/'));
        if (component == u"..") {
            if (!components.empty())
                components.pop_back();
        } else if (!component.empty() && component != u".") {
            components.push_back(component);
        }
        path.remove_prefix(std::min(component.size() + 1, path.size()));
    }
    return components;
}

} // namespace

inline namespace NSStringOstraExtensions {

bool pathIsInDirectory(const String& path, const String& directory)
{
    return relativePathToDirectory(path, directory).has_value();
}

std::optional<String> relativePathToDirectory(const String& path, const String& directory)
{
    const auto components = resolvedComponents(path);
    const auto folder = resolvedComponents(directory);
    if (path.view().starts_with(u'/') != directory.view().starts_with(u'/'))
        return std::nullopt;
    if (folder.size() >= components.size()
        || !std::ranges::equal(folder, std::span(components).first(folder.size())))
        return std::nullopt;
    MutableString relative;
    for (const auto component : std::span(components).subspan(folder.size()))
        relative.append(relative.isEmpty() ? u"" : u"/").append(component);
    return std::move(relative).take();
}

} // namespace NSStringOstraExtensions
} // namespace caddis
