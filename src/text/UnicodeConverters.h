#pragma once

#include "platform/unicode/StringEncoding.h"

#include <cstddef>
#include <span>
#include <string_view>

/// Conversion between encodings into a buffer of the caller's. Any thread may convert at any time.
namespace caddis {
inline namespace NSStringOstraExtensions {

enum class ConversionStatus {
    Success,
    IllFormedSource, ///< everything was converted; U+FFFD stands for each ill-formed part
    DestinationFull, ///< only what fits was written, never part of a character
    UnknownEncoding, ///< nothing was written
};

struct Conversion {
    ConversionStatus status;
    std::size_t length; ///< units, or bytes, written
};

/// Never full with a unit for each byte.
Conversion convertUTF8ToUnicode(std::string_view source, std::span<char16_t> destination);
/// Never full with three bytes for each unit.
Conversion convertUnicodeToUTF8(std::u16string_view source, std::span<char> destination);
Conversion convertEncodingToUnicode(
    std::string_view source, CFStringEncoding sourceEncoding, std::span<char16_t> destination);

} // namespace NSStringOstraExtensions
} // namespace caddis
