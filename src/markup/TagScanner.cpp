#include "markup/TagScanner.h"

#include "markup/OpenTags.h"
#include "markup/RawText.h"
#include "platform/base/Exception.h"
#include "platform/base/UnitBuffer.h"
#include "text/StringUtilities.h"

#include <algorithm>

// The scan walks the '<' bits of the text's masks. For each it takes the masks of the 64 units from there on:
// the quotes' parity tells which '>' stand outside values, the first of those ends the tag, and the first
// possible end of a name behind the first letter ends the name. Tags that are longer, or not so plainly
// written, go the slow way, as comments and sections do. Both ways give the same calls.

namespace caddis {
inline namespace XmlExtensions {

namespace {

// Bit k: whether the number of bits from 0 through k is odd.
std::uint64_t parity(std::uint64_t bits)
{
    for (unsigned shift = 1; shift < 64; shift *= 2)
        bits ^= bits << shift;
    return bits;
}

bool isAsciiLetter(char16_t unit) { return static_cast<char16_t>((unit | 0x20) - u'a') < 26; }

bool endsName(char16_t unit) { return unit == u'>' || unit == u'/' || whiteCharacterSetRep().contains(unit); }

class Scanner {
public:
    Scanner(const String& string, const char16_t* units, char16_t* mutableUnits, TagHandlerFunction handler)
        : m_text({ units, string.length() })
        , m_units(units)
        , m_length(string.length())
        , m_handler(handler)
        , m_event { string, units, mutableUnits }
    {
    }

    void run();

private:
    std::size_t delimit(std::size_t tag);
    std::size_t delimitSlowly(std::size_t tag);
    std::size_t endOfComment(std::size_t tag);
    std::size_t endOfSection(std::size_t tag);
    std::size_t delimitElement(std::size_t tag, std::size_t end, Range name);
    Range nameOf(std::size_t tag, std::size_t end) const;
    Scan deliver(std::size_t tag, std::size_t behind);
    void finish(std::size_t openTag);

    MaskedText m_text;
    const char16_t* m_units;
    std::size_t m_length;
    TagHandlerFunction m_handler;
    OpenTags m_openTags { m_text };
    TagEvent m_event;
    RawText m_rawText { m_text };
    std::size_t m_next = 0; // Behind the last tag: where the present text run begins.
};

void Scanner::run()
{
    for (std::size_t block = 0; block < m_text.blocks(); block = std::max(block + 1, m_next / BlockUnits)) {
        for (std::uint64_t less = m_text.masks(block)->less; less; less &= less - 1) {
            const std::size_t tag = block * BlockUnits + static_cast<unsigned>(std::countr_zero(less));
            if (tag < m_next)
                continue;
            const std::size_t end = delimit(tag);
            if (end == NotFound)
                return finish(tag);
            if (deliver(tag, end + 1) == Scan::Stop)
                return;
        }
    }
    m_event.kind = TagKind::Element;
    finish(m_length);
}

Scan Scanner::deliver(std::size_t tag, std::size_t behind)
{
    m_event.text = { m_next, tag - m_next };
    m_event.tag = { tag, behind - tag };
    m_next = behind;
    return m_handler(m_event);
}

// The end of the text stands behind `openTag`, a tag that nothing ends.
void Scanner::finish(std::size_t openTag)
{
    m_event.name = {};
    if (m_event.kind != TagKind::Element)
        deliver(openTag, m_length);
    m_event.kind = TagKind::Text;
    deliver(m_length, m_length);
}

// Sets the event's kind and name for what begins at `tag`; returns its last unit, or NotFound when nothing
// ends it.
std::size_t Scanner::delimit(std::size_t tag)
{
    const unsigned shift = tag % BlockUnits;
    const UnitMasks* masks = m_text.masks(tag / BlockUnits);
    const auto fromTag = [=](std::uint64_t UnitMasks::*mask) {
        return masks[0].*mask >> shift | masks[1].*mask << 1 << (BlockUnits - 1 - shift);
    };
    const std::uint64_t doubleQuotes = fromTag(&UnitMasks::doubleQuote);
    const std::uint64_t inValues = parity(doubleQuotes);
    const std::uint64_t ends = fromTag(&UnitMasks::greater) & ~inValues;
    const std::uint64_t before = (ends - 1) & ~ends;
    const std::uint64_t strayQuotes = fromTag(&UnitMasks::singleQuote) & ~inValues;
    const std::uint64_t looseQuotes = doubleQuotes & inValues & ~(fromTag(&UnitMasks::equals) << 1);
    if (!ends || ((strayQuotes | looseQuotes) & before) || m_units[tag + 1] == u'!')
        return delimitSlowly(tag);

    const std::size_t end = tag + static_cast<unsigned>(std::countr_zero(ends));
    const std::size_t start = tag + (m_units[tag + 1] == u'/' ? 2 : 1);
    const std::uint64_t nameEnds = fromTag(&UnitMasks::nameEnd) >> (start - tag);
    const auto length = static_cast<unsigned>(std::countr_zero(nameEnds));
    const bool plain = isAsciiLetter(m_units[start]) && endsName(m_units[start + length]);
    return delimitElement(tag, end, plain ? Range { start, length } : nameOf(tag, end));
}

std::size_t Scanner::delimitSlowly(std::size_t tag)
{
    m_event.name = {};
    if (tag + 2 < m_length && m_units[tag + 1] == u'!') {
        if (m_units[tag + 2] == u'[')
            return endOfSection(tag);
        if (m_units[tag + 2] == u'-')
            return endOfComment(tag);
    }
    m_event.kind = TagKind::Element;
    const std::size_t end = m_openTags.closingBracket(tag);
    return end == NotFound ? NotFound : delimitElement(tag, end, nameOf(tag, end));
}

// "<![" and the unit behind it can end nothing.
std::size_t Scanner::endOfSection(std::size_t tag)
{
    m_event.kind = TagKind::Section;
    return m_text.find(&UnitMasks::greater, tag + 4, [units = m_units](std::size_t at) {
        return units[at - 1] == u']'
            || (units[at - 1] == u'-' && units[at - 2] == u'-' && units[at - 3] == u']');
    });
}

// "<!-" and the unit behind it can end nothing; but "<!-->" is a comment.
std::size_t Scanner::endOfComment(std::size_t tag)
{
    m_event.kind = TagKind::Comment;
    const bool singleDash = tag + 3 >= m_length || m_units[tag + 3] != u'-';
    return m_text.find(&UnitMasks::greater, tag + 4, [=, units = m_units](std::size_t at) {
        if (units[at - 1] == u'-')
            return singleDash || units[at - 2] == u'-';
        return !singleDash && units[at - 1] == u'!' && units[at - 2] == u'-' && units[at - 3] == u'-';
    });
}

// The tag ends at `end`; the content of a script or style element belongs to it.
std::size_t Scanner::delimitElement(std::size_t tag, std::size_t end, Range name)
{
    m_event.kind = TagKind::Element;
    m_event.name = name;
    if (name.length != 5 && name.length != 6)
        return end;
    if (!RawText::isRaw({ m_units + name.location, name.length }) || m_units[tag + 1] == u'/'
        || m_units[end - 1] == u'/')
        return end;
    const std::size_t elementEnd = m_rawText.endOfElement(tag, { m_units + name.location, name.length });
    if (elementEnd == NotFound)
        return end;
    if (elementEnd < end)
        m_openTags.expectReturns();
    return elementEnd;
}

Range Scanner::nameOf(std::size_t tag, std::size_t end) const
{
    const char16_t* const last = m_units + end;
    const char16_t* start = std::find_if(m_units + tag, last,
        [&letters = alphaCharacterSetRep()](char16_t unit) { return letters.contains(unit); });
    if (start == last)
        return {};
    const char16_t* stop = std::find_if(start, last, endsName);
    return { static_cast<std::size_t>(start - m_units), static_cast<std::size_t>(stop - start) };
}

} // namespace

// Only the tag of a raw element can hold the opening of its own closing tag.
bool TagEvent::isWholeElement() const
{
    if (!isStartTag() || !name.isFound() || !RawText::isRaw(units(name)))
        return false;
    const std::u16string_view all = units(tag);
    for (std::size_t at = all.rfind(u"</"); at != std::u16string_view::npos && at > 0;
         at = all.rfind(u"</", at - 1)) {
        if (hasPrefixNoCase(all.substr(at + 2), units(name)))
            return true;
    }
    return false;
}

bool GetTagsOfString(const String& string, TagHandlerFunction handler, Characters access)
{
    if (string.isEmpty())
        return false;
    if (access == Characters::ReadOnly) {
        Scanner(string, string.data(), nullptr, handler).run();
        return true;
    }
    UnitBuffer copy;
    if (!copy.tryAllocate(string.length()))
        return false;
    std::ranges::copy(string, copy.data());
    Scanner(string, copy.data(), copy.data(), handler).run();
    return true;
}

bool parseXmlWithHandler(const String& string, TagHandlerFunction handler, Characters access)
{
    return guarded(u"parseXmlWithHandler:context:mutable:", u"String",
        [&] { return GetTagsOfString(string, handler, access); });
}

} // namespace XmlExtensions
} // namespace caddis
