#include "markup/HtmlTags.h"

#include "text/CharacterTables.h"

#include <array>
#include <cstdint>

namespace caddis {

namespace {

constexpr HtmlTagRow Rows[] = {
    { u"A", TagBreak::None, HtmlTag::Anchor },
    { u"BLOCKQUOTE", TagBreak::Paragraph },
    { u"BODY", TagBreak::None, HtmlTag::Body },
    { u"BR", TagBreak::Line },
    { u"CITE", TagBreak::Space },
    { u"CODE", TagBreak::Space, HtmlTag::Code },
    { u"DD", TagBreak::Line },
    { u"DIR", TagBreak::Paragraph },
    { u"DIV", TagBreak::Paragraph, HtmlTag::Div },
    { u"DL", TagBreak::Line },
    { u"DT", TagBreak::Line },
    { u"FONT", TagBreak::None, HtmlTag::Font },
    { u"H1", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H2", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H3", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H4", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H5", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H6", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H7", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H8", TagBreak::Paragraph, HtmlTag::Heading },
    { u"H9", TagBreak::Paragraph, HtmlTag::Heading },
    { u"HEAD", TagBreak::None, HtmlTag::Head },
    { u"HR", TagBreak::Paragraph },
    { u"IFRAME", TagBreak::None, HtmlTag::Iframe },
    { u"IMG", TagBreak::None, HtmlTag::Image },
    { u"INPUT", TagBreak::Space },
    { u"LI", TagBreak::Line },
    { u"MARQUEE", TagBreak::None, HtmlTag::Marquee },
    { u"MENU", TagBreak::Paragraph },
    { u"NOFRAMES", TagBreak::None, HtmlTag::Noframes },
    { u"NOSCRIPT", TagBreak::None, HtmlTag::Noscript },
    { u"OL", TagBreak::Line },
    { u"OPTION", TagBreak::None, HtmlTag::Option },
    { u"P", TagBreak::Paragraph },
    { u"PLAINTEXT", TagBreak::None, HtmlTag::Plaintext },
    { u"PRE", TagBreak::None, HtmlTag::Pre },
    { u"SELECT", TagBreak::None, HtmlTag::Select },
    { u"SPAN", TagBreak::None, HtmlTag::Span },
    { u"TABLE", TagBreak::Paragraph, HtmlTag::Table },
    { u"TD", TagBreak::Cell },
    { u"TEXTAREA", TagBreak::None, HtmlTag::Textarea },
    { u"TH", TagBreak::Cell },
    { u"TR", TagBreak::Line, HtmlTag::TableRow },
    { u"UL", TagBreak::Line },
};

// Ten units of six bits each: all upper-case letters and digits, and no two names alike.
constexpr std::size_t LongestName = 10;

constexpr std::uint64_t packed(std::uint64_t key, char16_t upper) { return key << 6 | (upper - 0x20U); }

// An open hash table of the packed names, made by the compiler.
struct Slot {
    std::uint64_t key = 0;
    HtmlTagRow row {};
};
constexpr std::size_t SlotBits = 8;
constexpr std::size_t Slots = std::size_t(1) << SlotBits;

constexpr std::size_t slotOf(std::uint64_t key)
{
    return static_cast<std::size_t>(key * 0x9E3779B97F4A7C15U >> (64 - SlotBits));
}

constexpr std::array<Slot, Slots> table = [] {
    std::array<Slot, Slots> slots;
    for (const HtmlTagRow& row : Rows) {
        std::uint64_t key = 0;
        for (const char16_t unit : row.name)
            key = packed(key, unit);
        std::size_t slot = slotOf(key);
        while (slots[slot].key)
            slot = (slot + 1) % Slots;
        slots[slot] = { key, row };
    }
    return slots;
}();

} // namespace

const HtmlTagRow& htmlTag(std::u16string_view name)
{
    static constexpr HtmlTagRow nothing {};
    if (name.size() > LongestName)
        return nothing;
    const ConversionTable& upper = upperCharsTable();
    std::uint64_t key = 0;
    for (const char16_t unit : name) {
        const char16_t letter = upper[unit];
        if (letter < u'0' || letter > u'Z')
            return nothing;
        key = packed(key, letter);
    }
    for (std::size_t slot = slotOf(key); table[slot].key; slot = (slot + 1) % Slots) {
        if (table[slot].key == key)
            return table[slot].row;
    }
    return nothing;
}

} // namespace caddis
