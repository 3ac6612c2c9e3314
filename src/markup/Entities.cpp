#include "markup/Entities.h"

#include "markup/EntityTable.h"
#include "platform/base/UnitBuffer.h"
#include "platform/base/UnitSearch.h"
#include "text/CharacterTables.h"

#include <algorithm>

namespace caddis {
inline namespace XmlExtensions {

namespace {

constexpr char32_t LastCodePoint = 0x10FFFF;
constexpr std::size_t ShortestConvertedText = 4;

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

bool isAsciiAlphanumeric(char16_t unit)
{
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return (unit >= u'0' && unit <= u'9') || (lower >= u'a' && lower <= u'z');
}

// The digit's value in bases up to 16; 16 for what is no digit.
unsigned digitValue(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10U : 16U;
}

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
        const unsigned digit = digitValue(text[index]);
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
    struct Name {
        std::u16string_view text;
        char16_t character;
        bool Accepted::*wanted;
    };
    static constexpr Name names[] = {
        { u"&amp", u'&', &Accepted::standard },
        { u"&apos", u'\'', &Accepted::standard },
        { u"&gt", u'>', &Accepted::standard },
        { u"&lt", u'<', &Accepted::standard },
        { u"&nbsp", u'\u00A0', &Accepted::named },
        { u"&quot", u'"', &Accepted::quotes },
    };
    for (const Name& name : names) {
        if (text.starts_with(name.text))
            return accepted.*name.wanted ? withSemicolon(text, { name.text.size(), name.character })
                                         : Reference {};
    }
    return {};
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
    if (text.size() > 1 && text[1] == u'#')
        return accepted.numeric ? numericReference(text) : Reference {};
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
    while (at < text.size() && !readReference(text.substr(at), accepted).length)
        at = indexOfUnit<u'&'>(text, at + 1);
    return at;
}

// `at` is an & or the text's end. No reference is shorter than what it becomes, so `out` never overtakes the
// text.
std::size_t convert(std::u16string_view text, std::size_t at, char16_t* const begin, const Accepted& accepted)
{
    char16_t* out = begin;
    std::size_t copied = 0;
    const auto copyUpTo = [&](std::size_t end) {
        const std::u16string_view run = text.substr(copied, end - copied);
        if (out != run.data())
            std::char_traits<char16_t>::move(out, run.data(), run.size());
        out += run.size();
    };
    while (at < text.size()) {
        const Reference reference = readReference(text.substr(at), accepted);
        if (reference.length) {
            copyUpTo(at);
            out = appendCharacter(out, reference.character, accepted);
            copied = at + reference.length;
        }
        at = indexOfUnit<u'&'>(text, at + std::max<std::size_t>(reference.length, 1));
    }
    copyUpTo(text.size());
    return static_cast<std::size_t>(out - begin);
}

String converted(const String& text, const Accepted& accepted)
{
    if (text.length() < ShortestConvertedText)
        return text;
    const std::size_t first = firstReference(text, accepted);
    UnitBuffer buffer;
    if (first == text.length() || !buffer.tryAllocate(text.length()))
        return text;
    return String({ buffer.data(), convert(text, first, buffer.data(), accepted) });
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
    const bool tooShort = text.size() < ShortestConvertedText;
    return convert(text, tooShort ? text.size() : indexOfUnit<u'&'>(text, 0), out, acceptedBy(options));
}

} // namespace XmlExtensions
} // namespace caddis
