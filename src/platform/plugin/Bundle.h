#pragma once

#include "platform/base/Value.h"
#include "platform/plugin/ElfPreflight.h"

#include <optional>
#include <vector>

namespace caddis {

/// A folder with an Info.plist and code: "Name.mdimporter". Its path is a logical one (InstallRoots.h).
class Bundle {
public:
    /// Nil when there is no folder, or no dictionary in its Contents/Info.plist (or Info.plist).
    static std::optional<Bundle> bundleWithPath(const String& path);

    const String& path() const { return m_path; }
    const Dictionary& infoDictionary() const { return m_info; }

    /// The real path of the file that CFBundleExecutable names, looked for in Contents/Linux-MACHINE,
    /// Contents/Linux, Contents and the bundle itself, as NAME and as libNAME.so. Nil: none.
    std::optional<String> executablePath() const;

    /// Whether the code could be loaded; none of it runs.
    Preflight preflight() const;

    /// Whether "CFPlugInDynamicRegistration" is true: the boolean, another number than 0, or the text "YES",
    /// "true" or "1" in any case.
    bool isDynamicallyRegistered() const;

    /// Names in the value for `key` when it is a dictionary.
    std::vector<String> keysOf(std::u16string_view key) const;

private:
    Bundle(String path, Dictionary info)
        : m_path(std::move(path))
        , m_info(std::move(info))
    {
    }

    String m_path;
    Dictionary m_info;
};

} // namespace caddis
