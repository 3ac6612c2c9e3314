#include "markup/JSONEscapes.h"

#include "platform/base/HexDigit.h"
#include "platform/base/MutableString.h"
#include "platform/base/UnitSearch.h"

#include <algorithm>
#include <bit>
#include <emmintrin.h>

namespace caddis {
inline namespace JSONExtensions {

namespace {

using Text = std::u16string_view;

// Takes up to `count` units off the front as hexadecimal digits; missing ones, and what is none, count as 0.
char16_t takeHexadecimal(Text& rest, unsigned count)
{
    unsigned value = 0;
    for (unsigned digit = 0; digit < count; ++digit) {
        value <<= 4;
        if (rest.empty())
            continue;
        value |= static_cast<unsigned>(std::max(hexDigit(rest.front()), 0));
        rest.remove_prefix(1);
    }
    return static_cast<char16_t>(value);
}

// What the escape means whose text behind the backslash starts `rest`; takes it off.
char16_t takeEscaped(Text& rest, bool javaScript)
{
    const char16_t unit = rest.front();
    rest.remove_prefix(1);
    switch (unit) {
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
    case u'b':
        return u'\b';
    case u'f':
        return u'\f';
    case u'u':
        return takeHexadecimal(rest, 4);
    case u'v':
        return javaScript ? u'\v' : unit;
    case u'x':
        return javaScript ? takeHexadecimal(rest, 2) : unit;
    case u'O':
        // Kept on purpose: the null escape is recognised on the capital letter, not on the digit zero.
        return javaScript ? u'\0' : unit;
    default:
        return unit;
    }
}

// The unit behind the backslash; 0 for a unit that needs none.
constexpr char16_t escapeLetter(char16_t unit)
{
    switch (unit) {
    case u'\b':
        return u'b';
    case u'\t':
        return u't';
    case u'\n':
        return u'n';
    case u'\f':
        return u'f';
    case u'\r':
        return u'r';
    case u'"':
    case u'/':
    case u'\\':
        return unit;
    default:
        return 0;
    }
}

// Sixteen units a step, narrowed to bytes: units above 255 become 0 or 255, which need no escape. The range
// from backspace to carriage return is tested as one; the vertical tab in it is a false alarm.
unsigned mayNeedEscape(const char16_t* sixteen)
{
    const auto* blocks = reinterpret_cast<const __m128i*>(sixteen);
    const __m128i bytes = _mm_packus_epi16(_mm_loadu_si128(blocks), _mm_loadu_si128(blocks + 1));
    const __m128i fromBackspace = _mm_sub_epi8(bytes, _mm_set1_epi8('\b'));
    const __m128i control
        = _mm_cmpeq_epi8(_mm_min_epu8(fromBackspace, _mm_set1_epi8('\r' - '\b')), fromBackspace);
    const __m128i quote = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'));
    const __m128i slash = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/'));
    const __m128i backslash = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(control, quote), _mm_or_si128(slash, backslash))));
}

// The index of the first unit from `from` on that needs an escape; the text's length when there is none.
std::size_t indexOfEscapable(Text text, std::size_t from)
{
    constexpr std::size_t Step = 16;
    for (; from + Step <= text.size(); from += Step) {
        for (unsigned alarms = mayNeedEscape(text.data() + from); alarms; alarms &= alarms - 1) {
            const std::size_t index = from + static_cast<unsigned>(std::countr_zero(alarms));
            if (escapeLetter(text[index]))
                return index;
        }
    }
    while (from < text.size() && !escapeLetter(text[from]))
        ++from;
    return from;
}

} // namespace

String stringByConvertingJSONToCharacters(const String& text, bool javaScript)
{
    Text rest = text;
    std::size_t backslash = indexOfUnit<u'\\'>(rest, 0);
    if (backslash + 1 >= rest.size())
        return text;
    MutableString result(text.length());
    for (; backslash + 1 < rest.size(); backslash = indexOfUnit<u'\\'>(rest, 0)) {
        result.append(rest.substr(0, backslash));
        rest.remove_prefix(backslash + 1);
        result.append(takeEscaped(rest, javaScript));
    }
    result.append(rest);
    return std::move(result).take();
}

String stringByConvertingCharactersToJSON(const String& text)
{
    std::size_t found = indexOfEscapable(text, 0);
    if (found == text.length())
        return text;
    MutableString result(text.length() + text.length() / 8 + 8);
    std::size_t start = 0;
    for (; found < text.length(); found = indexOfEscapable(text, start)) {
        result.append(text.view({ start, found - start }));
        result.append(u'\\').append(escapeLetter(text[found]));
        start = found + 1;
    }
    result.append(text.view({ start, text.length() - start }));
    return std::move(result).take();
}

} // namespace JSONExtensions
} // namespace caddis
