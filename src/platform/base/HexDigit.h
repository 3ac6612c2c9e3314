#pragma once

#include <string_view>

namespace caddis {

/// The value of a hexadecimal digit of ASCII, a unit or a byte; -1 for what is none.
constexpr int hexDigit(char32_t digit)
{
    if (digit >= U'0' && digit <= U'9')
        return static_cast<int>(digit - U'0');
    const char32_t lower = digit | 0x20;
    return lower >= U'a' && lower <= U'f' ? static_cast<int>(lower - U'a' + 10) : -1;
}

/// The byte that the first two digits of `text` stand for; -1 unless they are two digits.
constexpr int hexByte(std::string_view text)
{
    const int high = text.size() < 2 ? -1 : hexDigit(static_cast<unsigned char>(text[0]));
    const int low = high < 0 ? -1 : hexDigit(static_cast<unsigned char>(text[1]));
    return low < 0 ? -1 : high * 16 + low;
}

} // namespace caddis
