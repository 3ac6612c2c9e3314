#include "markup/HtmlTags.h"

#include "text/CharacterTables.h"
#include "text/StringUtilities.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <emmintrin.h>

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

// A name as a number, a byte for each unit: eight of them, and names that are longer are taken by their first
// eight, which tell them apart from all others. Bit 5 is clear, so case does not count.
constexpr std::size_t KeyUnits = 8;
constexpr std::uint64_t Bytes = 0x0101010101010101;
constexpr std::uint64_t CaseBits = 0x20 * Bytes;

constexpr std::uint64_t keyOf(std::u16string_view name)
{
    std::uint64_t key = 0;
    for (std::size_t index = 0; index < std::min(name.size(), KeyUnits); ++index)
        key |= std::uint64_t(name[index]) << (8 * index);
    return key & ~CaseBits;
}

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
        const std::uint64_t key = keyOf(row.name);
        std::size_t slot = slotOf(key);
        while (slots[slot].key)
            slot = (slot + 1) % Slots;
        slots[slot] = { key, row };
    }
    return slots;
}();

const HtmlTagRow nothing {};

const HtmlTagRow& rowOfKey(std::uint64_t key)
{
    for (std::size_t slot = slotOf(key); table[slot].key; slot = (slot + 1) % Slots) {
        if (table[slot].key == key)
            return table[slot].row;
    }
    return nothing;
}

// Any name, unit by unit.
const HtmlTagRow& rowOfAnyName(std::u16string_view name)
{
    char16_t upper[KeyUnits] = {};
    std::transform(name.begin(), name.begin() + std::min(name.size(), KeyUnits), upper, toUpper);
    const HtmlTagRow& row = rowOfKey(keyOf({ upper, std::min(name.size(), KeyUnits) }));
    return isEqualNoCase(name, row.name) ? row : nothing;
}

} // namespace

const HtmlTagRow& htmlTag(std::u16string_view text, Range name)
{
    if (!name.isFound())
        return nothing;
    if (name.length > KeyUnits || text.size() - name.location < KeyUnits)
        return rowOfAnyName(text.substr(name.location, name.length));
    // Units that are no bytes become 0 or 255.
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + name.location));
    const auto all = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_packus_epi16(units, units)));
    const std::uint64_t used = ~std::uint64_t(0) >> (8 * (KeyUnits - name.length));
    const std::uint64_t bytes = all & used;
    // Each byte must be from 32 to 127: only there clearing bit 5 makes nothing but letters alike that differ
    // in case.
    const std::uint64_t printable = (bytes | bytes << 1) & 0x40 * Bytes;
    if (printable != (0x40 * Bytes & used) || (bytes & 0x80 * Bytes))
        return rowOfAnyName(text.substr(name.location, name.length));
    return rowOfKey(bytes & ~CaseBits);
}

} // namespace caddis
