// Characters to references. Each converter runs twice over the text: to count what it will write, then to
// write it; so the result's room is exact whatever the text holds, and a text without anything to convert
// allocates nothing.

#include "markup/Entities.h"
#include "markup/EntityTable.h"
#include "platform/base/UnitBuffer.h"
#include "platform/base/UnitSearch.h"
#include "platform/base/Utf.h"

#include <array>

namespace caddis {
inline namespace XmlExtensions {

namespace {

// "&thetasym;" and "&#1114111;" are the longest references.
constexpr std::size_t LongestReference = 10;

// What stands for the character at some index; no units when it stays.
class Replacement {
public:
    Replacement() = default;

    void append(char16_t unit) { m_units[m_length++] = unit; }
    void append(std::string_view ascii)
    {
        for (const char character : ascii)
            append(static_cast<char16_t>(static_cast<unsigned char>(character)));
    }
    std::u16string_view units() const { return { m_units.data(), m_length }; }
    bool isEmpty() const { return m_length == 0; }

    /// How many units of the text it replaces.
    std::size_t replaced = 1;

private:
    std::array<char16_t, LongestReference> m_units;
    std::size_t m_length = 0;
};

Replacement named(std::string_view name)
{
    Replacement result;
    if (!name.empty()) {
        result.append(u'&');
        result.append(name);
        result.append(u';');
    }
    return result;
}

// Calls `copy(run)` for what stays and `replace(units)` for what is replaced, in order.
template <typename Encoder, typename Copy, typename Replace>
void encode(const Encoder& encoder, std::u16string_view text, Copy copy, Replace replace)
{
    std::size_t copied = 0;
    for (std::size_t at = encoder.next(text, 0); at < text.size();) {
        const Replacement replacement = encoder.replacementAt(text, at);
        const std::size_t behind = at + replacement.replaced;
        if (!replacement.isEmpty()) {
            copy(text.substr(copied, at - copied));
            replace(replacement.units());
            copied = behind;
        }
        at = encoder.next(text, behind);
    }
    copy(text.substr(copied));
}

template <typename Encoder> String encoded(const Encoder& encoder, const String& text)
{
    std::size_t length = 0;
    bool changed = false;
    const auto count = [&](std::u16string_view run) { length += run.size(); };
    encode(encoder, text, count, [&](std::u16string_view units) {
        count(units);
        changed = true;
    });
    UnitBuffer buffer;
    if (!changed || !buffer.tryAllocate(length))
        return text;
    char16_t* out = buffer.data();
    const auto write = [&](std::u16string_view run) { out += run.copy(out, run.size()); };
    encode(encoder, text, write, write);
    return String({ buffer.data(), length });
}

struct TableEncoder {
    static std::size_t next(std::u16string_view text, std::size_t from)
    {
        return indexOfNonAscii(text, from);
    }
    static Replacement replacementAt(std::u16string_view text, std::size_t at)
    {
        return named(entityOfCharacter(text[at]));
    }
};

struct StandardEncoder {
    static std::size_t next(std::u16string_view text, std::size_t from)
    {
        return indexOfUnit<u'"', u'&', u'<', u'>'>(text, from);
    }
    static Replacement replacementAt(std::u16string_view text, std::size_t at)
    {
        switch (text[at]) {
        case u'"':
            return named("quot");
        case u'&':
            return named("amp");
        case u'<':
            return named("lt");
        default:
            return named("gt");
        }
    }
};

struct NumericEncoder {
    static std::size_t next(std::u16string_view text, std::size_t from)
    {
        return indexOfNonAscii(text, from);
    }
    static Replacement replacementAt(std::u16string_view text, std::size_t at)
    {
        Replacement result;
        char32_t character = text[at];
        if (isHighSurrogate(character) && at + 1 < text.size() && isLowSurrogate(text[at + 1])) {
            character = 0x10000 + ((character & 0x3FF) << 10) + (text[at + 1] & 0x3FFU);
            result.replaced = 2;
        }
        result.append(u'&');
        result.append(u'#');
        char32_t unit = 100;
        while (character / unit >= 10)
            unit *= 10;
        for (; unit > 0; unit /= 10)
            result.append(static_cast<char16_t>(u'0' + character / unit % 10));
        result.append(u';');
        return result;
    }
};

} // namespace

String stringByConvertingCharactersToEntities(const String& text) { return encoded(TableEncoder(), text); }

String stringByConvertingCharactersToStandardEntities(const String& text)
{
    return encoded(StandardEncoder(), text);
}

String stringByConvertingHighCharactersToEntities(const String& text)
{
    return encoded(NumericEncoder(), text);
}

} // namespace XmlExtensions
} // namespace caddis
