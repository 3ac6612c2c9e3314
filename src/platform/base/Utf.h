#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// UTF-8 and UTF-16, both ways, on raw buffers. Runs of ASCII go sixteen at a time.
namespace caddis {

/// Decodes into `units`, which has room for at least `bytes.size()` units; returns how many were written.
/// Each maximal ill-formed part becomes one U+FFFD, as browsers do it.
std::size_t utf8ToUtf16(std::string_view bytes, char16_t* units);

/// The same, but nil at the first ill-formed part; what was written until then is unspecified.
std::optional<std::size_t> strictUtf8ToUtf16(std::string_view bytes, char16_t* units);

/// Encodes; each lone surrogate becomes U+FFFD.
std::string utf16ToUtf8(std::u16string_view units);

/// The index of the first surrogate without its partner, or NotFound.
std::size_t firstLoneSurrogate(std::u16string_view units);

constexpr bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

} // namespace caddis
