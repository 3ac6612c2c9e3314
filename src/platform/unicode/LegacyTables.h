#pragma once

#include "platform/unicode/StringEncoding.h"

#include <span>
#include <string_view>

/// Inside this folder: single-byte encodings that neither ICU nor iconv reads.
namespace caddis::encodings {

/// A byte that stands for two characters.
struct Expansion {
    unsigned char byte;
    std::u16string_view text;
};

struct LegacyTable {
    CFStringEncoding encoding;
    const char16_t* high; ///< of bytes 80 to FF; 0 where an expansion says it, U+FFFD where nothing is
    const char16_t* low = nullptr; ///< of bytes 20 to 7F; null for ASCII
    std::span<const Expansion> expansions = {};
};

/// Null when there is no such table.
const LegacyTable* legacyTableOf(CFStringEncoding encoding);

} // namespace caddis::encodings
