#pragma once

#include <string_view>

/// Small questions about UTF-8 text, well formed or not.
namespace caddis::bundles {

inline constexpr std::string_view AsciiSpace { " \t\n\v\f\r\0", 7 };

/// Without white space and U+0000 at both ends.
inline std::string_view trimmed(std::string_view text)
{
    const auto begin = text.find_first_not_of(AsciiSpace);
    return begin == text.npos ? std::string_view()
                              : text.substr(begin, text.find_last_not_of(AsciiSpace) - begin + 1);
}

/// Without the beginning of a character at the end, where a text was cut.
inline std::string_view wholeCharacters(std::string_view text)
{
    for (std::size_t back = 1; back <= 3 && back <= text.size(); ++back) {
        const auto byte = static_cast<unsigned char>(text[text.size() - back]);
        if (byte < 0x80)
            return text;
        if (byte >= 0xC0) {
            const std::size_t needed = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
            return needed > back ? text.substr(0, text.size() - back) : text;
        }
    }
    return text;
}

/// The text as far as it goes before `separator`, which is taken from `rest` along with it; all of it where
/// there is none.
inline std::string_view takeUntil(std::string_view& rest, char separator)
{
    const auto end = rest.find(separator);
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    return part;
}

/// Whether both are the same, ASCII letters in either case.
inline bool equalsNoCase(std::string_view left, std::string_view right)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    if (left.size() != right.size())
        return false;
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (lower(left[i]) != lower(right[i]))
            return false;
    }
    return true;
}

inline bool endsWithNoCase(std::string_view text, std::string_view ending)
{
    return text.size() >= ending.size() && equalsNoCase(text.substr(text.size() - ending.size()), ending);
}

inline bool startsWithNoCase(std::string_view text, std::string_view beginning)
{
    return equalsNoCase(text.substr(0, beginning.size()), beginning);
}

} // namespace caddis::bundles
