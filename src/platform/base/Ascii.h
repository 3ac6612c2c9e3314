#pragma once

#include "platform/base/MutableString.h"

#include <concepts>

/// Digits and letters of ASCII, whatever else a text holds. Characters are units or bytes.
namespace caddis {

constexpr bool isAsciiDigit(char32_t character) { return character >= U'0' && character <= U'9'; }

constexpr bool isAsciiLetter(char32_t character)
{
    const char32_t lower = character | 0x20;
    return lower >= U'a' && lower <= U'z';
}

template <std::integral Character> constexpr Character lowercaseAscii(Character character)
{
    const bool isUpper = character >= Character('A') && character <= Character('Z');
    return isUpper ? static_cast<Character>(character | 0x20) : character;
}

/// All other letters stay as they are.
inline String lowercaseAscii(const String& text)
{
    MutableString result(text.length());
    for (const char16_t unit : text)
        result.append(lowercaseAscii(unit));
    return std::move(result).take();
}

} // namespace caddis
