#pragma once

#include <algorithm>
#include <string>

namespace caddis {

/// ASCII letters in lower case; other bytes stay.
inline std::string lowered(std::string text)
{
    std::ranges::transform(text, text.begin(),
        [](char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte; });
    return text;
}

} // namespace caddis
