#include "JSONLine.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace caddis::tool {

namespace {

void skipBlanks(std::string_view& rest)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t\r\n"), rest.size()));
}

bool isBlank(std::string_view rest)
{
    skipBlanks(rest);
    return rest.empty();
}

bool take(std::string_view& rest, char expected)
{
    skipBlanks(rest);
    if (!rest.starts_with(expected))
        return false;
    rest.remove_prefix(1);
    return true;
}

// Behind the closing quote; npos when there is none. `rest` begins with the opening one.
std::size_t endOfString(std::string_view rest)
{
    for (std::size_t index = 1; index < rest.size(); ++index) {
        if (rest[index] == '\\')
            ++index;
        else if (rest[index] == '"')
            return index + 1;
    }
    return rest.npos;
}

std::size_t endOfCollection(std::string_view rest)
{
    std::size_t depth = 0;
    for (std::size_t index = 0; index < rest.size(); ++index) {
        const char byte = rest[index];
        if (byte == '"') {
            const std::size_t length = endOfString(rest.substr(index));
            if (length == rest.npos)
                return rest.npos;
            index += length - 1;
        } else if (byte == '{' || byte == '[')
            ++depth;
        else if ((byte == '}' || byte == ']') && --depth == 0)
            return index + 1;
    }
    return rest.npos;
}

std::optional<std::string_view> takeValue(std::string_view& rest)
{
    skipBlanks(rest);
    std::size_t length = rest.find_first_of(",} \t\r\n");
    if (rest.starts_with('"'))
        length = endOfString(rest);
    else if (rest.starts_with('{') || rest.starts_with('['))
        length = endOfCollection(rest);
    if (length == rest.npos || length == 0)
        return std::nullopt;
    const auto value = rest.substr(0, length);
    rest.remove_prefix(length);
    return value;
}

// The unit of a \uXXXX whose digits begin `rest`; they are taken.
char16_t takeUnit(std::string_view& rest)
{
    const auto digits = rest.substr(0, 4);
    std::uint16_t unit = 0xFFFD;
    std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    rest.remove_prefix(digits.size());
    return unit;
}

std::string unescaped(std::string_view rest)
{
    constexpr std::string_view Letters = "bfnrt";
    constexpr std::string_view Meanings = "\b\f\n\r\t";
    std::string result;
    while (!rest.empty()) {
        const char byte = rest.front();
        rest.remove_prefix(1);
        if (byte != '\\' || rest.empty()) {
            result += byte;
            continue;
        }
        const char escape = rest.front();
        rest.remove_prefix(1);
        if (escape != 'u') {
            const std::size_t letter = Letters.find(escape);
            result += letter == Letters.npos ? escape : Meanings[letter];
            continue;
        }
        std::u16string units; // All that follow each other: a pair of surrogates is one character.
        units += takeUnit(rest);
        while (rest.starts_with("\\u")) {
            rest.remove_prefix(2);
            units += takeUnit(rest);
        }
        result += String(units).utf8();
    }
    return result;
}

} // namespace

JSONLine::JSONLine(std::string_view line)
    : m_isObject(read(line))
{
    if (!m_isObject)
        m_members.clear();
}

bool JSONLine::read(std::string_view rest)
{
    if (!take(rest, '{'))
        return false;
    if (take(rest, '}'))
        return isBlank(rest);
    do {
        const auto name = takeValue(rest);
        if (!name || !name->starts_with('"') || !take(rest, ':'))
            return false;
        const auto value = takeValue(rest);
        if (!value)
            return false;
        m_members.push_back({ name->substr(1, name->size() - 2), *value });
    } while (take(rest, ','));
    return take(rest, '}') && isBlank(rest);
}

std::optional<std::string_view> JSONLine::raw(std::string_view name) const
{
    const auto member = std::ranges::find(m_members, name, &Member::name);
    return member == m_members.end() ? std::nullopt : std::optional(member->value);
}

std::optional<std::string> JSONLine::text(std::string_view name) const
{
    const auto value = raw(name);
    if (!value || !value->starts_with('"'))
        return std::nullopt;
    return unescaped(value->substr(1, value->size() - 2));
}

} // namespace caddis::tool
