#include "markup/Entities.h"

#include "markup/EntityTable.h"
#include "platform/base/Ascii.h"
#include "platform/base/HexDigit.h"
#include "platform/base/UnitBuffer.h"
#include "platform/base/UnitSearch.h"
#include "text/CharacterTables.h"

#include <algorithm>
#include <bit>
#include <emmintrin.h>

namespace caddis {
inline namespace XmlExtensions {

namespace {

constexpr char32_t LastCodePoint = 0x10FFFF;
constexpr std::size_t ShortestConvertedText = 4;
constexpr std::size_t ShortestReference = 3; // "&lt"

// Which references a call converts.
struct Accepted {
    bool quotes = true;
    bool standard = true;
    bool named = true; // the table and &nbsp
    bool numeric = true;
    bool nonUmlauted = false;
};

// A reference at the start of a text; length 0 when there is none.
struct Reference {
    std::size_t length = 0;
    char32_t character = 0;
};

Reference withSemicolon(std::u16string_view text, Reference reference)
{
    if (reference.length < text.size() && text[reference.length] == u';')
        ++reference.length;
    return reference;
}

bool isAsciiAlphanumeric(char16_t unit) { return isAsciiDigit(unit) || isAsciiLetter(unit); }

// "&#65;" and "&#x41;". Surrogates are taken as units, so that a pair written as two numbers joins again.
Reference numericReference(std::u16string_view text)
{
    std::size_t index = 2;
    unsigned base = 10;
    if (index < text.size() && (text[index] | 0x20) == u'x') {
        base = 16;
        ++index;
    }
    const std::size_t firstDigit = index;
    char32_t value = 0;
    for (; index < text.size(); ++index) {
        const auto digit = static_cast<unsigned>(hexDigit(text[index])); // Beyond all bases for what is none.
        if (digit >= base)
            break;
        value = std::min<char32_t>(value * base + digit, LastCodePoint + 1);
    }
    if (index == firstDigit || value == 0 || value > LastCodePoint)
        return {};
    return withSemicolon(text, { index, value });
}

// The names that need neither a semicolon nor an end.
Reference standardReference(std::u16string_view text, const Accepted& accepted)
{
    const auto named = [&](std::u16string_view name, char16_t character, bool wanted) {
        return wanted && text.starts_with(name) ? withSemicolon(text, { name.size(), character })
                                                : Reference {};
    };
    switch (text[1]) {
    case u'a':
        return text[2] == u'm' ? named(u"&amp", u'&', accepted.standard)
                               : named(u"&apos", u'\'', accepted.standard);
    case u'g':
        return named(u"&gt", u'>', accepted.standard);
    case u'l':
        return named(u"&lt", u'<', accepted.standard);
    case u'n':
        return named(u"&nbsp", u'\u00A0', accepted.named);
    case u'q':
        return named(u"&quot", u'"', accepted.quotes);
    default:
        return {};
    }
}

Reference tableReference(std::u16string_view text)
{
    std::size_t end = 1;
    while (end < text.size() && end <= LongestEntityName && isAsciiAlphanumeric(text[end]))
        ++end;
    const auto character = characterOfEntity(text.substr(1, end - 1));
    if (!character)
        return {};
    if (end < text.size() && text[end] == u';')
        return { end + 1, *character };
    const bool ends = end == text.size() || (text[end] != u'=' && !isAsciiAlphanumeric(text[end]));
    return *character < 0x100 && ends ? Reference { end, *character } : Reference {};
}

Reference readReference(std::u16string_view text, const Accepted& accepted)
{
    if (text.size() < ShortestReference)
        return {};
    if (text[1] == u'#')
        return accepted.numeric ? numericReference(text) : Reference {};
    if (!isAsciiLetter(text[1]))
        return {};
    const Reference standard = standardReference(text, accepted);
    return standard.length || !accepted.named ? standard : tableReference(text);
}

char16_t* appendCharacter(char16_t* out, char32_t character, const Accepted& accepted)
{
    if (character >= 0x10000) {
        *out++ = static_cast<char16_t>(0xD7C0 + (character >> 10));
        *out++ = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        return out;
    }
    const auto unit = static_cast<char16_t>(character);
    *out++ = accepted.nonUmlauted ? umlautsToAscii(unit) : unit;
    return out;
}

// Where the first reference stands; the text's length when there is none.
std::size_t firstReference(std::u16string_view text, const Accepted& accepted)
{
    std::size_t at = indexOfUnit<u'&'>(text, 0);
    while (at < text.size() && !readReference(text.substr(at), accepted).length) {
        ++at;
        if (at < text.size() && text[at] != u'&')
            at = indexOfUnit<u'&'>(text, at);
    }
    return at;
}

// Copies what stands before the next & from index `at` on, and moves both ends on. Blocks of eight units go
// at once; what such a block writes too much must not be text that is still to be read, so it takes a gap of
// eight between the ends, which a few references open in a text that is converted in place.
void copyRun(std::u16string_view text, std::size_t& at, char16_t*& out, bool inPlace)
{
    const bool hasGap = !inPlace || text.data() + at - out >= 8;
    while (hasGap && at + 8 <= text.size()) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
        const auto found
            = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, _mm_set1_epi16(u'&'))));
        const unsigned copied = found ? static_cast<unsigned>(std::countr_zero(found)) / 2 : 8;
        at += copied;
        out += copied;
        if (found)
            return;
    }
    const std::size_t end = indexOfUnit<u'&'>(text, at);
    std::char_traits<char16_t>::move(out, text.data() + at, end - at);
    out += end - at;
    at = end;
}

// All before index `at` has been copied already. No reference is shorter than what it becomes, so `out` never
// overtakes the text.
char16_t* convert(std::u16string_view text, std::size_t at, char16_t* out, const Accepted& accepted)
{
    const bool inPlace = out == text.data() + at;
    while (at < text.size()) {
        if (text[at] != u'&') {
            copyRun(text, at, out, inPlace);
            continue;
        }
        const Reference reference = readReference(text.substr(at), accepted);
        out = appendCharacter(out, reference.length ? reference.character : u'&', accepted);
        at += std::max<std::size_t>(reference.length, 1);
    }
    return out;
}

String converted(const String& text, const Accepted& accepted)
{
    if (text.length() < ShortestConvertedText)
        return text;
    const std::size_t first = firstReference(text, accepted);
    UnitBuffer buffer;
    if (first == text.length() || !buffer.tryAllocate(text.length()))
        return text;
    text.view().copy(buffer.data(), first);
    const char16_t* const end = convert(text, first, buffer.data() + first, accepted);
    return String({ buffer.data(), end });
}

Accepted acceptedBy(EntityOptions options)
{
    const bool names = !options.onlyNumericEntities;
    return { names && options.quotes, names, names, true, options.nonUmlauted };
}

} // namespace

String stringByConvertingEntitiesToCharacters(const String& text, EntityOptions options)
{
    return converted(text, acceptedBy(options));
}

String stringByConvertingEntitiesToCharactersNonUmlauted(const String& text, bool nonUmlauted)
{
    return stringByConvertingEntitiesToCharacters(text, { .nonUmlauted = nonUmlauted });
}

String stringByConvertingStandardEntitiesToCharacters(const String& text)
{
    return converted(text, { .named = false, .numeric = false });
}

std::size_t convertEntities2Characters(std::u16string_view text, char16_t* out, EntityOptions options)
{
    if (text.size() >= ShortestConvertedText)
        return static_cast<std::size_t>(convert(text, 0, out, acceptedBy(options)) - out);
    std::char_traits<char16_t>::move(out, text.data(), text.size());
    return text.size();
}

} // namespace XmlExtensions
} // namespace caddis
