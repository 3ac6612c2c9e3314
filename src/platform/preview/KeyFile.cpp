#include "platform/preview/KeyFile.h"

#include <charconv>

namespace caddis {

namespace {

// Cuts the text behind the mark and gives what stood before it.
std::string_view cutBefore(std::string_view& text, char mark)
{
    const std::string_view before = text.substr(0, text.find(mark));
    text.remove_prefix(std::min(before.size() + 1, text.size()));
    return before;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view White = " \t\r";
    const std::size_t start = text.find_first_not_of(White);
    return start == text.npos ? std::string_view()
                              : text.substr(start, text.find_last_not_of(White) + 1 - start);
}

} // namespace

KeyFile::KeyFile(std::string_view text)
{
    Group* group = nullptr;
    while (!text.empty()) {
        std::string_view line = trimmed(cutBefore(text, '\n'));
        if (line.starts_with('[') && line.ends_with(']'))
            group = &m_groups[std::string(line.substr(1, line.size() - 2))];
        else if (group && !line.starts_with('#') && line.find('=') != line.npos) {
            const std::string_view key = trimmed(cutBefore(line, '='));
            group->insert_or_assign(std::string(key), trimmed(line));
        }
    }
}

std::optional<std::string_view> KeyFile::value(std::string_view group, std::string_view key) const
{
    const auto keys = m_groups.find(group);
    if (keys == m_groups.end())
        return std::nullopt;
    const auto found = keys->second.find(key);
    return found == keys->second.end() ? std::nullopt : std::optional<std::string_view>(found->second);
}

std::vector<std::string_view> KeyFile::list(
    std::string_view group, std::string_view key, char separator) const
{
    std::vector<std::string_view> parts;
    for (std::string_view rest = value(group, key).value_or(std::string_view()); !rest.empty();) {
        const std::string_view part = trimmed(cutBefore(rest, separator));
        if (!part.empty())
            parts.push_back(part);
    }
    return parts;
}

int KeyFile::number(std::string_view group, std::string_view key) const
{
    const auto digits = value(group, key).value_or(std::string_view());
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

} // namespace caddis
