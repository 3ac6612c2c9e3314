#include "platform/richtext/TextStyle.h"

#include "platform/base/MutableString.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace caddis {

namespace {

std::int32_t partOfByte(std::uint8_t byte) { return (byte * TextColor::Full + 127) / 255; }

void appendDecimal(MutableString& text, std::int32_t number)
{
    const std::string digits = std::to_string(number);
    text.append(String::fromLatin1(digits));
}

// "a" to "z", then "aa": numbers without a zero.
void appendAlphabetic(MutableString& text, std::int32_t number, char16_t first)
{
    std::array<char16_t, 8> letters {};
    std::size_t begin = letters.size();
    for (; number > 0; number = (number - 1) / 26)
        letters[--begin] = static_cast<char16_t>(first + (number - 1) % 26);
    text.append({ letters.data() + begin, letters.size() - begin });
}

void appendRoman(MutableString& text, std::int32_t number, bool upper)
{
    struct Digit {
        std::int32_t value;
        std::u16string_view letters;
    };
    static constexpr std::array<Digit, 13> Digits { { { 1000, u"m" }, { 900, u"cm" }, { 500, u"d" },
        { 400, u"cd" }, { 100, u"c" }, { 90, u"xc" }, { 50, u"l" }, { 40, u"xl" }, { 10, u"x" }, { 9, u"ix" },
        { 5, u"v" }, { 4, u"iv" }, { 1, u"i" } } };
    for (const Digit& digit : Digits) {
        for (; number >= digit.value; number -= digit.value) {
            for (const char16_t letter : digit.letters)
                text.append(upper ? static_cast<char16_t>(letter - u'a' + u'A') : letter);
        }
    }
}

char16_t bulletOf(std::u16string_view style)
{
    if (style == u"circle")
        return 0x25E6;
    if (style == u"square")
        return 0x25AA;
    if (style == u"box")
        return 0x25A1;
    if (style == u"check")
        return 0x2713;
    if (style == u"diamond")
        return 0x25C6;
    return style == u"hyphen" ? 0x2043 : 0x2022;
}

void appendMarker(MutableString& text, std::u16string_view style, std::int32_t number)
{
    constexpr std::int32_t LargestRoman = 3999;
    const bool isUpper = style.starts_with(u"upper-");
    const bool isCounted = number > 0;
    if (style == u"none")
        return;
    if (isCounted && (style.ends_with(u"-alpha") || style.ends_with(u"-latin"))) {
        appendAlphabetic(text, number, isUpper ? u'A' : u'a');
    } else if (isCounted && number <= LargestRoman && style.ends_with(u"-roman")) {
        appendRoman(text, number, isUpper);
    } else if (isUpper || style.starts_with(u"lower-") || style.starts_with(u"decimal")) {
        if (isCounted && number < 10 && style == u"decimal-leading-zero")
            text.append(u'0');
        appendDecimal(text, number);
    } else {
        text.append(bulletOf(style));
    }
}

} // namespace

TextColor TextColor::fromBytes(std::uint8_t red, std::uint8_t green, std::uint8_t blue, double alpha)
{
    const double opaque = std::isfinite(alpha) ? std::clamp(alpha, 0.0, 1.0) : 1.0;
    return { partOfByte(red), partOfByte(green), partOfByte(blue),
        static_cast<std::int32_t>(std::lround(opaque * Full)) };
}

std::uint8_t TextColor::byte(std::int32_t part)
{
    return static_cast<std::uint8_t>((std::clamp(part, 0, Full) * 255 + Full / 2) / Full);
}

String TextList::marker(std::int32_t itemNumber) const
{
    const std::u16string_view format = markerFormat;
    const std::size_t open = format.find(u'{');
    const std::size_t close = format.find(u'}', open == std::u16string_view::npos ? 0 : open);
    MutableString text;
    if (open == std::u16string_view::npos || close == std::u16string_view::npos) {
        text.append(format);
    } else {
        text.append(format.substr(0, open));
        appendMarker(text, format.substr(open + 1, close - open - 1), itemNumber);
        text.append(format.substr(close + 1));
    }
    return std::move(text).take();
}

} // namespace caddis
