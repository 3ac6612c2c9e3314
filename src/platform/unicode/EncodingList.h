#pragma once

#include "platform/base/String.h"
#include "platform/unicode/StringEncoding.h"

#include <optional>
#include <string>
#include <string_view>

/// Inside this folder: which engine reads which encoding.
namespace caddis::encodings {

enum class Engine {
    Utf8,
    Utf16, ///< with a byte-order mark, else little-endian
    Utf16LE,
    Utf16BE,
    Latin1,
    Ascii,
    Own, ///< a table of LegacyTables
    ICU8, ///< a table asked from ICU once
    Iconv8, ///< a table asked from iconv once
    ICU,
    Iconv,
};

struct Row {
    CFStringEncoding encoding;
    Engine engine;
    const char* name = nullptr; ///< as ICU or iconv knows it
    /// IBM's tables read 1A, 1C and 7F in a circle (1C, 7F, 1A); text means them as ASCII does.
    bool rotatesControls = false;
};

/// Null when the encoding is unknown.
const Row* rowOf(CFStringEncoding encoding);

/// The row's number, below RowLimit.
std::size_t numberOf(const Row& row);
inline constexpr std::size_t RowLimit = 128;

struct Decoded {
    String text; ///< U+FFFD for each ill-formed part
    bool wellFormed = true;
};

Decoded decodeWithICU(const char* name, std::string_view bytes);
std::optional<std::string> encodeWithICU(const char* name, std::u16string_view text);
Decoded decodeWithIconv(const char* name, std::string_view bytes);
std::optional<std::string> encodeWithIconv(const char* name, std::u16string_view text);

} // namespace caddis::encodings
