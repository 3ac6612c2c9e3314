#pragma once

#include "platform/base/String.h"
#include "platform/preview/KeyFile.h"

#include <optional>
#include <span>
#include <vector>

namespace caddis {

/// The icons of a theme and of those that it inherits from: Icon Theme Specification 0.13.
class IconTheme {
public:
    /// Themes lie in "icons" in each of the data folders. `name` comes first, what it inherits next, then
    /// "hicolor"; those that are missing are passed over.
    IconTheme(std::span<const String> dataFolders, const std::string& name);

    /// The file of the icon that is best shown at most `side` pixels large: the smallest that is as large, a
    /// picture that can be had in any size, or the largest. The first theme that has the icon counts. Nil:
    /// none has it.
    std::optional<String> pathOfIcon(const std::string& icon, int side) const;

private:
    struct Directory {
        String path;
        int size; ///< pixels
        bool isScalable;
    };
    using Theme = std::vector<Directory>;

    std::optional<KeyFile> indexOf(const std::string& name) const;
    Theme read(const KeyFile& index, const std::string& name) const;

    std::vector<String> m_folders;
    std::vector<Theme> m_themes;
};

} // namespace caddis
