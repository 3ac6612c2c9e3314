#pragma once

#include <cstdint>
#include <string_view>

/// Numbers at the start of a text, read as the platform's string class reads them: white space is skipped,
/// one sign may follow, reading ends at the first unit that does not fit, and a text without a number is 0.
namespace caddis {
inline namespace NSStringOstraExtensions {

/// True when, behind white space, one sign and zeros, the next unit is one of Y y T t 1 to 9.
bool boolValue(std::u16string_view text);

/// Decimal digits; too large a number is the type's maximum or minimum.
std::int64_t longLongValue(std::u16string_view text);
inline std::int64_t integerValue(std::u16string_view text) { return longLongValue(text); }
std::int32_t intValue(std::u16string_view text);

/// Decimal digits with a fraction and an exponent ("-1.5e3"), whatever the locale; too large a number is
/// HUGE_VAL, too small a one 0.
double doubleValue(std::u16string_view text);

} // namespace NSStringOstraExtensions
} // namespace caddis
