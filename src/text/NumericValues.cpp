#include "text/NumericValues.h"

#include "platform/base/Ascii.h"
#include "text/StringUtilities.h"

#include <clocale>
#include <cstdlib>
#include <limits>
#include <string>

namespace caddis {
inline namespace NSStringOstraExtensions {

namespace {

// What follows the white space and the sign.
struct Signed {
    bool negative;
    std::u16string_view rest;
};

Signed skipSign(std::u16string_view text)
{
    text = trimmingWhiteSpaces(text);
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+'))
        text.remove_prefix(1);
    return { negative, text };
}

template <typename Integer> Integer clampedInteger(std::u16string_view text)
{
    using Limits = std::numeric_limits<Integer>;
    const Signed number = skipSign(text);
    Integer value = 0;
    for (const char16_t unit : number.rest) {
        if (!isAsciiDigit(unit))
            break;
        const auto digit = static_cast<Integer>(number.negative ? u'0' - unit : unit - u'0');
        if (__builtin_mul_overflow(value, 10, &value) || __builtin_add_overflow(value, digit, &value))
            return number.negative ? Limits::min() : Limits::max();
    }
    return value;
}

} // namespace

bool boolValue(std::u16string_view text)
{
    const std::u16string_view rest = skipSign(text).rest;
    const std::size_t index = rest.find_first_not_of(u'0');
    return index != rest.npos && std::u16string_view(u"YyTt123456789").find(rest[index]) != rest.npos;
}

std::int64_t longLongValue(std::u16string_view text) { return clampedInteger<std::int64_t>(text); }

std::int32_t intValue(std::u16string_view text) { return clampedInteger<std::int32_t>(text); }

double doubleValue(std::u16string_view text)
{
    // Without letters but e, strtod knows neither "inf" and "nan" nor hexadecimal numbers.
    static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
    std::string number;
    for (const char16_t unit : trimmingWhiteSpaces(text)) {
        if (!isAsciiDigit(unit) && std::u16string_view(u"+-.eE").find(unit) == std::u16string_view::npos)
            break;
        number += static_cast<char>(unit);
    }
    return strtod_l(number.c_str(), nullptr, classic);
}

} // namespace NSStringOstraExtensions
} // namespace caddis
