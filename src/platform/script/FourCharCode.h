#pragma once

#include <cstdint>
#include <string>

namespace caddis {

/// Four characters in one number, the first in the highest byte: the names of types, keywords and events.
using FourCharCode = std::uint32_t;

inline namespace literals {
/// "utxt"_code: exactly four characters.
constexpr FourCharCode operator""_code(const char* characters, std::size_t length)
{
    if (length != 4)
        throw "a code has four characters";
    FourCharCode code = 0;
    for (std::size_t index = 0; index < 4; ++index)
        code = code << 8 | static_cast<unsigned char>(characters[index]);
    return code;
}
} // namespace literals

/// The four bytes as characters.
inline std::string codeCharacters(FourCharCode code)
{
    return { static_cast<char>(code >> 24), static_cast<char>(code >> 16), static_cast<char>(code >> 8),
        static_cast<char>(code) };
}

} // namespace caddis
