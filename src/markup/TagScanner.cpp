#include "markup/TagScanner.h"

#include "markup/OpenTags.h"
#include "markup/RawText.h"
#include "platform/base/Exception.h"
#include "platform/base/UnitBuffer.h"
#include "text/StringUtilities.h"

#include <algorithm>

// The scan walks the '<' bits of the text's masks. For each it takes the masks of the next 57 units, and of
// the next again until it ends: the quotes' parity tells which '>' stand outside values, the first of those
// ends the tag, and the first possible end of a name behind the first letter ends the name. Tags that are
// longer, or not so plainly written, go the slow way, as comments and sections do. Both ways give the same
// calls.

namespace caddis {
inline namespace XmlExtensions {

namespace {

bool isAsciiLetter(char16_t unit) { return static_cast<char16_t>((unit | 0x20) - u'a') < 26; }

// Whether a tag has attributes can't be foreseen: no branches here.
bool endsName(char16_t unit)
{
    return static_cast<bool>((unit == u'>') | (unit == u'/') | whiteCharacterSetRep().contains(unit));
}

// Whether a name may be "script" or "style" in some case; not only ASCII letters have an S as their capital.
bool mayBeRaw(char16_t first, std::size_t length)
{
    return static_cast<bool>((length - 5 <= 1) & (((first | 0x20) == u's') | (first > 0x7F)));
}

// The length of the tag that begins at unit `place` of the masks, when it lies in them and is plainly
// written: all its quotes are double ones, and those that open a value stand right behind equals signs.
inline std::size_t plainLength(const UnitMasks& masks, std::size_t place, std::size_t unitsAtHand)
{
    // A window begins with the last unit of the one before it, which may be an equals sign.
    constexpr std::uint64_t Examined = (std::uint64_t(1) << UnitMasks::WindowUnits) - 2;
    constexpr std::size_t Step = UnitMasks::WindowUnits - 1;
    const std::uint64_t oddBefore = 0 - (UnitMasks::window(masks.inDouble, place) & 1);
    for (std::size_t at = place; at + BlockUnits <= unitsAtHand; at += Step) {
        const std::uint64_t inValues = UnitMasks::window(masks.inDouble, at) ^ oddBefore;
        const std::uint64_t ends = UnitMasks::window(masks.greater, at) & ~inValues & Examined;
        const std::uint64_t before = (ends - 1) & ~ends & Examined; // All, if nothing ends here.
        const std::uint64_t strayQuotes = UnitMasks::window(masks.singleQuote, at) & ~inValues;
        const std::uint64_t looseQuotes = inValues & ~((inValues | UnitMasks::window(masks.equals, at)) << 1);
        if ((strayQuotes | looseQuotes) & before)
            break;
        if (ends)
            return at - place + static_cast<unsigned>(std::countr_zero(ends)) + 1;
    }
    return NotFound;
}

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
    static constexpr unsigned PlacesAStep = 4;

    std::size_t placesOfTags(std::size_t block);
    std::size_t delimit(std::size_t tag);
    std::size_t delimitSlowly(std::size_t tag);
    std::size_t endOfComment(std::size_t tag);
    std::size_t endOfSection(std::size_t tag);
    std::size_t delimitElement(std::size_t tag, std::size_t end, Range name);
    std::size_t endOfElement(std::size_t tag, std::size_t end);
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
    std::uint16_t
        m_places[UnitMasks::Batch * BlockUnits + PlacesAStep]; // Of '<', from the batch's beginning.
    std::size_t m_listed = 0; // Blocks whose tags are listed.
    std::size_t m_next = 0; // Behind the last tag: where the present text run begins.
};

void Scanner::run()
{
    for (std::size_t block = 0; block < m_text.blocks();) {
        const std::size_t first = block * BlockUnits;
        const std::uint16_t* const last = m_places + placesOfTags(block);
        for (const std::uint16_t* place = m_places; place != last; ++place) {
            const std::size_t tag = first + *place;
            if (tag < m_next)
                continue;
            const std::size_t end = delimit(tag);
            if (end == NotFound)
                return finish(tag);
            if (deliver(tag, end + 1) == Scan::Stop)
                return;
        }
        block = std::max(block + m_listed, m_next / BlockUnits);
    }
    m_event.kind = TagKind::Element;
    finish(m_length);
}

// Lists the places of '<' in the batch from `block` on. Four bits a step are taken whether they are there or
// not: how many a block has is what a processor can't foresee.
std::size_t Scanner::placesOfTags(std::size_t block)
{
    constexpr std::uint64_t AnyBit = std::uint64_t(1)
        << (BlockUnits - 1); // Asked for no bit, a processor differs.
    const UnitMasks& masks = m_text.masks(block);
    // A long tag may have moved the masks on to a batch in the midst of which `block` stands.
    const std::size_t start = m_text.indexOf(block);
    m_listed = std::min(UnitMasks::Batch - start, m_text.blocks() - block);
    std::uint16_t* place = m_places;
    for (std::size_t index = 0; index < m_listed; ++index) {
        std::uint64_t less = masks.less[start + index];
        do {
            for (unsigned step = 0; step < PlacesAStep; ++step) {
                const int bit = std::countr_zero(less | AnyBit);
                *place = static_cast<std::uint16_t>(index * BlockUnits + static_cast<unsigned>(bit));
                place += less != 0;
                less &= less - 1;
            }
        } while (less);
    }
    return static_cast<std::size_t>(place - m_places);
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

// The tag ends at `end`; the content of a script or style element belongs to it.
inline std::size_t Scanner::delimitElement(std::size_t tag, std::size_t end, Range name)
{
    m_event.kind = TagKind::Element;
    m_event.name = name;
    return name.length && mayBeRaw(m_units[name.location], name.length) ? endOfElement(tag, end) : end;
}

// Sets the event's kind and name for what begins at `tag`; returns its last unit, or NotFound when nothing
// ends it.
std::size_t Scanner::delimit(std::size_t tag)
{
    const UnitMasks& masks = m_text.masks(tag / BlockUnits);
    const std::size_t place = m_text.indexOf(tag / BlockUnits) * BlockUnits + tag % BlockUnits;
    const std::size_t length = plainLength(masks, place, m_text.unitsAtHand());
    if (length == NotFound || m_units[tag + 1] == u'!')
        return delimitSlowly(tag);

    const std::size_t end = tag + length - 1;
    const std::size_t start = tag + 1 + static_cast<std::size_t>(m_units[tag + 1] == u'/');
    const std::uint64_t nameEnds = UnitMasks::window(masks.nameEnd, place) >> (start - tag);
    const auto nameLength = static_cast<unsigned>(std::countr_zero(nameEnds));
    if (!nameEnds || !isAsciiLetter(m_units[start]) || !endsName(m_units[start + nameLength]))
        return delimitElement(tag, end, nameOf(tag, end));
    return delimitElement(tag, end, { start, nameLength });
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

std::size_t Scanner::endOfElement(std::size_t tag, std::size_t end)
{
    const std::u16string_view name = m_event.units(m_event.name);
    if (!RawText::isRaw(name) || m_units[tag + 1] == u'/' || m_units[end - 1] == u'/')
        return end;
    const std::size_t elementEnd = m_rawText.endOfElement(tag, name);
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
