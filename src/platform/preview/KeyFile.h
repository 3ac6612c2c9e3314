#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace caddis {

/// A text file of groups of keys, as the desktop's specifications have it (Desktop Entry Specification, 3):
///
///     [Thumbnailer Entry]
///     Exec=evince-thumbnailer -s %s %u %o
///
/// Values are taken as they stand, escapes included. Of several equal keys the last one counts; what is
/// neither a group nor a key is passed over.
class KeyFile {
public:
    explicit KeyFile(std::string_view text);

    std::optional<std::string_view> value(std::string_view group, std::string_view key) const;
    /// The value's parts, empty ones left out; none without a value.
    std::vector<std::string_view> list(std::string_view group, std::string_view key, char separator) const;
    /// 0 for what is no number.
    int number(std::string_view group, std::string_view key) const;

private:
    using Group = std::map<std::string, std::string, std::less<>>;
    std::map<std::string, Group, std::less<>> m_groups;
};

} // namespace caddis
