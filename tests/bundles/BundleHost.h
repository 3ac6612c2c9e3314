#pragma once

#include <map>
#include <string>
#include <string_view>

namespace caddis {

/// What an importer said of a file: lists with " | " between their entries, dates as seconds since 1970,
/// numbers as they print. The text is under "kMDItemTextContent".
struct Imported {
    bool result = false;
    std::map<std::string, std::string, std::less<>> values;
    std::string log {};
    std::string leftOut {};
    std::size_t items = 0; ///< strings added to lists

    /// "(absent)" where the attribute is not set.
    std::string operator[](std::string_view key) const
    {
        const auto found = values.find(key);
        return found == values.end() ? "(absent)" : found->second;
    }
};

/// Whether the bundle was built: its library may be missing on this machine.
bool hasBundle(const std::string& name);

/// Loads the bundle of the build tree and has it read the file, as a host does.
///
/// The text is taken up to `textLimit` bytes.
Imported importWith(const std::string& bundle, const char* contentType, const std::string& path,
    std::size_t textLimit = 16 * 1024 * 1024);

} // namespace caddis
