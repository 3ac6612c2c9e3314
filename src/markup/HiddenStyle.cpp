#include "markup/HiddenStyle.h"

#include "markup/TagAttributes.h"
#include "text/FastComparison.h"
#include "text/NumericValues.h"

namespace caddis {

namespace {

constexpr auto npos = std::u16string_view::npos;

std::u16string_view styleOf(std::u16string_view tag)
{
    const auto range = rangeOfNamedValue(tag, "STYLE", TagSyntax);
    return range ? unitsInRange(tag, *range) : std::u16string_view();
}

bool containsInOrder(std::u16string_view style, std::u16string_view first, std::u16string_view second)
{
    const std::size_t at = style.find(first);
    return at != npos && style.find(second, at + first.size()) != npos;
}

bool isFarOutside(std::u16string_view style, UpperAscii property)
{
    constexpr int Farthest = -1000;
    const auto value = rangeOfNamedValue(style, property, StyleSyntax);
    return value && intValue(unitsInRange(style, *value)) < Farthest;
}

bool isTiny(int pixels) { return pixels < 0 || (pixels >= 1 && pixels <= 3); }

} // namespace

bool isHiddenStyle(std::u16string_view tag)
{
    const std::u16string_view style = styleOf(tag);
    if (style.empty())
        return false;
    if (containsInOrder(style, u"visibility", u"hidden") || containsInOrder(style, u"display:", u"none"))
        return true;
    if (fastCaseInsensitiveContainsUnichars(style, u"position:absolute")
        && (isFarOutside(style, "TOP") || isFarOutside(style, "LEFT")))
        return true;
    const auto size = getTagWidth(tag);
    return size && (isTiny(size->width) || isTiny(size->height));
}

bool isTinyFont(std::u16string_view tag)
{
    const std::u16string_view style = styleOf(tag);
    const std::size_t size = style.find(u"font-size");
    const std::size_t unit = size == npos ? npos : style.find(u"pt", size);
    if (unit == npos)
        return false;
    const char16_t digit = style[unit - 1];
    return digit >= u'1' && digit <= u'4' && !digitCharacterSetRep().contains(style[unit - 2]);
}

} // namespace caddis
