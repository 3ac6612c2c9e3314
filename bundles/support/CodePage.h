#pragma once

#include "platform/base/String.h"

#include <optional>
#include <string_view>

/// Text and times as Windows programs store them.
namespace caddis::bundles {

/// Bytes in the code page of that number: 1252, 65001, 932. An unknown number is read as 1252; ill-formed
/// parts become U+FFFD.
String textInCodePage(std::string_view bytes, unsigned codePage);
/// Little-endian UTF-16; an odd byte at the end does not count.
String textInUtf16(std::string_view bytes);

/// Up to the first U+0000.
std::string_view untilZero(std::string_view bytes);

/// A count of 100 ns from the start of 1601 on as seconds since 1970; nil for 0, which stands for no time,
/// and for what is no year of four digits.
std::optional<double> secondsOfFileTime(std::uint64_t time);

} // namespace caddis::bundles
