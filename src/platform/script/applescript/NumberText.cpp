#include "platform/script/applescript/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace caddis::applescript {

namespace {

constexpr int SignificantDigits = 12;

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r'; }

std::string realText(double value)
{
    if (std::isnan(value))
        return "NAN";
    if (std::isinf(value))
        return value > 0 ? "INF" : "-INF";
    char digits[40];
    std::snprintf(digits, sizeof digits, "%.*e", SignificantDigits - 1, value);
    std::string mantissa(digits, std::string_view(digits).find('e'));
    const int exponent = std::atoi(digits + mantissa.size() + 1);
    mantissa.erase(mantissa.find_last_not_of('0') + 1);
    const bool plain = value == 0 || (exponent < 4 && exponent >= -4);
    if (!plain) {
        if (mantissa.ends_with('.'))
            mantissa += '0';
        return mantissa + (exponent < 0 ? "E-" : "E+") + std::to_string(std::abs(exponent));
    }
    std::snprintf(digits, sizeof digits, "%.*f", std::max(SignificantDigits - 1 - exponent, 1), value);
    std::string text(digits);
    text.erase(text.find_last_not_of('0') + 1);
    return text.ends_with('.') ? text + '0' : text;
}

} // namespace

String numberText(const Datum& number)
{
    return String::fromLatin1(
        number.is(Kind::Integer) ? std::to_string(number.asInteger()) : realText(number.asReal()));
}

String exactNumberText(const Datum& number)
{
    String shown = numberText(number);
    const auto again = numberFromText(shown);
    if (again && again->asReal() == number.asReal())
        return shown;
    char digits[32];
    const char* end = std::to_chars(digits, std::end(digits), number.asReal()).ptr;
    return String::fromLatin1({ digits, static_cast<std::size_t>(end - digits) });
}

std::optional<Datum> numberFromText(std::u16string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    if (text.starts_with(u'+'))
        text.remove_prefix(1);
    std::string digits;
    bool whole = true;
    for (const char16_t unit : text) {
        const bool digit = unit >= u'0' && unit <= u'9';
        if (!digit
            && !(unit < 0x80
                && std::string_view("+-.eE").find(static_cast<char>(unit)) != std::string_view::npos))
            return std::nullopt;
        whole = whole && (digit || unit == u'-');
        digits += static_cast<char>(unit);
    }
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.empty())
        return std::nullopt;
    return whole ? wholeIfPossible(value) : Datum::real(value);
}

Datum wholeIfPossible(double value)
{
    const bool fits = value == std::floor(value) && value >= static_cast<double>(Datum::MinimumInteger)
        && value <= static_cast<double>(Datum::MaximumInteger);
    return fits ? Datum::integer(static_cast<std::int64_t>(value)) : Datum::real(value);
}

} // namespace caddis::applescript
