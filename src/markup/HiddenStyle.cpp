#include "markup/HiddenStyle.h"

#include "markup/TagAttributes.h"
#include "text/FastComparison.h"
#include "text/NumericValues.h"
#include "text/StringUtilities.h"

#include <emmintrin.h>

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

__m128i isLetter(__m128i units, char letter) { return _mm_cmpeq_epi16(units, _mm_set1_epi16(letter)); }

// Nearly all tags have neither class "hidden" nor a style. Every "hidden" has the units "dd" in some case,
// and every "STYLE" a "ty": a look at all pairs is much cheaper than two readings of the attributes.
bool mayBeHidden(std::u16string_view tag)
{
    const auto pairs = [&](std::size_t at) {
        const auto* units = reinterpret_cast<const __m128i*>(tag.data() + at);
        const __m128i caseBit = _mm_set1_epi16(0x20);
        const __m128i first = _mm_or_si128(_mm_loadu_si128(units), caseBit);
        const __m128i second
            = _mm_or_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(tag.data() + at + 1)), caseBit);
        const __m128i both = _mm_or_si128(_mm_and_si128(isLetter(first, 'd'), isLetter(second, 'd')),
            _mm_and_si128(isLetter(first, 't'), isLetter(second, 'y')));
        return _mm_movemask_epi8(both) != 0;
    };
    constexpr std::size_t Examined = 9; // Eight pairs.
    if (tag.size() < Examined)
        return false;
    for (std::size_t at = 0; at + Examined < tag.size(); at += Examined - 1) {
        if (pairs(at))
            return true;
    }
    return pairs(tag.size() - Examined);
}

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

} // namespace

bool isHiddenTag(std::u16string_view tag)
{
    if (!mayBeHidden(tag))
        return false;
    const auto name = rangeOfNamedValue(tag, "CLASS", TagSyntax);
    return (name && isEqualNoCase(unitsInRange(tag, *name), u"hidden")) || isHiddenStyle(tag);
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
