#include "html/CSSValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace caddis::css {

namespace {

TextColor fromHex(std::uint32_t value, double alpha = 1)
{
    const auto byte = [&](unsigned shift) { return static_cast<std::uint8_t>(value >> shift & 0xFF); };
    return TextColor::fromBytes(byte(16), byte(8), byte(0), alpha);
}

std::optional<TextColor> namedColor(std::u16string_view name)
{
    static const std::unordered_map<std::u16string_view, std::uint32_t> colors {
#include "html/CSSColorNames.inc"
    };
    const std::u16string lower = lowered(name);
    const auto found = colors.find(lower);
    return found == colors.end() ? std::nullopt : std::optional(fromHex(found->second));
}

// "rgb", "rgba", "rrggbb", "rrggbbaa".
std::optional<TextColor> hexColor(std::u16string_view digits)
{
    if (digits.size() != 3 && digits.size() != 4 && digits.size() != 6 && digits.size() != 8)
        return std::nullopt;
    const bool isShort = digits.size() <= 4;
    std::uint64_t value = 0;
    for (const char16_t unit : digits) {
        const int digit = hexDigit(unit);
        if (digit < 0)
            return std::nullopt;
        for (int times = isShort ? 2 : 1; times > 0; --times)
            value = value << 4 | static_cast<unsigned>(digit);
    }
    if (digits.size() == 3 || digits.size() == 6)
        return fromHex(static_cast<std::uint32_t>(value));
    return fromHex(static_cast<std::uint32_t>(value >> 8), static_cast<double>(value & 0xFF) / 255);
}

TextColor fromParts(double red, double green, double blue, double alpha)
{
    const auto byte
        = [](double part) { return static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0, 255.0))); };
    return TextColor::fromBytes(byte(red), byte(green), byte(blue), alpha);
}

TextColor fromHue(double hue, double saturation, double lightness, double alpha)
{
    const double reach = saturation * std::min(lightness, 1 - lightness);
    const auto part = [&](double offset) {
        const double place = std::fmod(offset + std::fmod(hue, 360) / 30 + 12, 12);
        return 255 * (lightness - reach * std::max(-1.0, std::min({ place - 3, 9 - place, 1.0 })));
    };
    return fromParts(part(0), part(8), part(4), alpha);
}

double angleOf(const Token& token)
{
    if (equalsIgnoringCase(token.text, u"turn"))
        return token.number * 360;
    if (equalsIgnoringCase(token.text, u"rad"))
        return token.number * 180 / 3.14159265358979;
    return token.number;
}

// Behind "rgb(" or "hsl(": three parts and perhaps an opacity, parted by commas, blanks or a slash.
std::optional<TextColor> functionColor(bool isHue, std::u16string_view inside)
{
    Tokenizer tokens(inside);
    std::array<double, 4> parts { 0, 0, 0, 1 };
    std::size_t count = 0;
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        if (token.is(TokenType::Comma) || token.isDelimiter(u'/'))
            continue;
        const bool isPercent = token.is(TokenType::Percentage);
        const bool isNumber = token.is(TokenType::Number) || token.is(TokenType::Dimension);
        if (count == parts.size() || (!isPercent && !isNumber && !token.isIdent(u"none")))
            return std::nullopt;
        double& part = parts[count];
        if (isHue && count == 0)
            part = angleOf(token);
        else if (isPercent)
            part = token.number / 100 * (isHue || count == 3 ? 1 : 255);
        else
            part = isHue && count < 3 ? token.number / 100 : token.number;
        ++count;
    }
    if (count < 3 || !std::ranges::all_of(parts, [](double part) { return std::abs(part) < 1e9; }))
        return std::nullopt;
    if (!isHue)
        return fromParts(parts[0], parts[1], parts[2], parts[3]);
    return fromHue(std::fmod(parts[0], 360) + 360, std::clamp(parts[1], 0.0, 1.0),
        std::clamp(parts[2], 0.0, 1.0), parts[3]);
}

} // namespace

std::optional<PropertyValue> colorFrom(const Token& token, Tokenizer& tokens)
{
    std::optional<TextColor> color;
    if (token.isIdent(u"transparent"))
        return PropertyValue::of(Keyword::Transparent);
    if (token.isIdent(u"currentcolor"))
        return PropertyValue::of(Keyword::CurrentColor);
    if (token.is(TokenType::Ident)) {
        color = namedColor(token.text);
    } else if (token.is(TokenType::Hash)) {
        color = hexColor(token.text);
    } else if (token.is(TokenType::Function)) {
        const std::u16string_view inside = tokens.skipBlock(TokenType::Function);
        const bool isHue = equalsIgnoringCase(token.text, u"hsl") || equalsIgnoringCase(token.text, u"hsla");
        if (isHue || equalsIgnoringCase(token.text, u"rgb") || equalsIgnoringCase(token.text, u"rgba"))
            color = functionColor(isHue, inside);
    }
    return color ? std::optional(PropertyValue::colored(*color)) : std::nullopt;
}

std::optional<TextColor> colorOf(std::u16string_view text)
{
    Tokenizer tokens(text);
    const auto value = colorFrom(tokens.nextSolid(), tokens);
    return value && value->kind == PropertyValue::Kind::Color ? std::optional(value->color) : std::nullopt;
}

std::optional<TextColor> legacyColorOf(std::u16string_view text)
{
    text = trimmed(text);
    if (const auto color = colorOf(text))
        return color;
    return text.size() == 6 ? hexColor(text) : std::nullopt;
}

} // namespace caddis::css
