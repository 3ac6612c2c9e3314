#pragma once

#include "text/CharacterTables.h"

#include <algorithm>
#include <string_view>

namespace caddis {

/// The name of a tag, an attribute or a property as the readers take it: upper-case ASCII, which the compiler
/// checks. It equals text in any case.
class UpperAscii {
public:
    consteval UpperAscii(const char* name) // NOLINT(google-explicit-constructor): a literal is an argument
        : m_name(name)
    {
        for (const char character : m_name) {
            if (character <= ' ' || character > '~' || (character >= 'a' && character <= 'z'))
                throw "not upper-case ASCII";
        }
    }

    constexpr std::string_view view() const { return m_name; }
    constexpr std::size_t length() const { return m_name.size(); }
    constexpr char16_t operator[](std::size_t index) const { return static_cast<char16_t>(m_name[index]); }

    bool equalsNoCase(std::u16string_view units) const
    {
        return units.size() == length() && isPrefixNoCaseOf(units);
    }
    bool isPrefixNoCaseOf(std::u16string_view units) const
    {
        const ConversionTable& upper = upperCharsTable();
        return units.size() >= length()
            && std::equal(m_name.begin(), m_name.end(), units.begin(),
                [&](char name, char16_t unit) { return upper[unit] == static_cast<char16_t>(name); });
    }

private:
    std::string_view m_name;
};

} // namespace caddis
