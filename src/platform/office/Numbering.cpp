#include "platform/office/Numbering.h"

#include "platform/base/MutableString.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace caddis::office {

namespace {

constexpr std::size_t MostLists = 4096;

constexpr std::array<std::pair<std::u16string_view, std::u16string_view>, 6> Bullets { {
    { u"\u2022", u"{disc}" },
    { u"\u25E6", u"{circle}" },
    { u"\u25AA", u"{square}" },
    { u"\u25A1", u"{box}" },
    { u"\u2713", u"{check}" },
    { u"\u2043", u"{hyphen}" },
} };

std::size_t index(int level) { return static_cast<std::size_t>(std::clamp(level, 0, LastListLevel)); }

String inBraces(const String& format)
{
    MutableString text;
    text.append(u'{').append(format).append(u'}');
    return std::move(text).take();
}

// Calls `number(level)` for each "%1", `text(units)` for what is between.
template <typename Number, typename Text>
void forEachPart(std::u16string_view pattern, Number&& number, Text&& text)
{
    for (std::size_t at = 0; at < pattern.size();) {
        const bool isNumber = pattern[at] == u'%' && at + 1 < pattern.size() && pattern[at + 1] >= u'1'
            && pattern[at + 1] <= u'9';
        if (isNumber)
            number(pattern[at + 1] - u'1');
        else
            text(pattern.substr(at, 1));
        at += isNumber ? 2 : 1;
    }
}

} // namespace

ListLevels& Numbering::define(const String& list)
{
    if (m_lists.size() >= MostLists && !has(list))
        return m_surplus = {};
    auto& entry = m_lists[list];
    entry = std::make_shared<List>();
    return entry->levels;
}

void Numbering::alias(const String& list, const String& original)
{
    const auto found = m_lists.find(original);
    if (found != m_lists.end() && m_lists.size() < 2 * MostLists)
        m_lists[list] = std::shared_ptr(found->second);
}

ListLevels& Numbering::separate(const String& list)
{
    const auto found = m_lists.find(list);
    if (found == m_lists.end())
        return define(list);
    found->second = std::make_shared<List>(*found->second);
    return found->second->levels;
}

const Numbering::List* Numbering::find(const String& list) const
{
    const auto found = m_lists.find(list);
    return found == m_lists.end() ? nullptr : found->second.get();
}

const ListLevel* Numbering::level(const String& list, int level) const
{
    const List* found = find(list);
    return found ? &found->levels[index(level)] : nullptr;
}

String Numbering::nextMarker(const String& list, int level)
{
    const auto found = m_lists.find(list);
    if (found == m_lists.end())
        return {};
    const auto& levels = found->second->levels;
    auto& numbers = found->second->numbers;
    const ListLevel& own = levels[index(level)];
    if (own.format == ListLevel::Bullet)
        return own.pattern;
    auto& number = numbers[index(level)];
    if (!number)
        number = own.start;
    else if (*number < std::numeric_limits<std::int32_t>::max())
        ++*number;
    std::fill(numbers.begin() + static_cast<std::ptrdiff_t>(index(level)) + 1, numbers.end(), std::nullopt);
    MutableString marker;
    forEachPart(
        own.pattern,
        [&](int part) {
            const TextList format { inBraces(levels[index(part)].format), 1 };
            marker.append(format.marker(numbers[index(part)].value_or(levels[index(part)].start)));
        },
        [&](std::u16string_view text) { marker.append(text); });
    return std::move(marker).take();
}

void Numbering::restart(const String& list, int level, std::int32_t number)
{
    const auto found = m_lists.find(list);
    if (found != m_lists.end() && number > std::numeric_limits<std::int32_t>::min())
        found->second->numbers[index(level)] = number - 1;
}

void Numbering::restart(const String& list)
{
    if (const auto found = m_lists.find(list); found != m_lists.end())
        found->second->numbers = {};
}

// Of a pattern with several numbers only the level's own is part of the format: the platform's lists put the
// others before it themselves.
TextList Numbering::textList(const String& list, int level) const
{
    TextList result;
    const List* found = find(list);
    if (!found)
        return result;
    const ListLevel& own = found->levels[index(level)];
    result.startingItemNumber = own.start;
    if (own.format == ListLevel::Bullet) {
        const auto* const known
            = std::ranges::find(Bullets, own.pattern.view(), [](auto& row) { return row.first; });
        result.markerFormat = known == Bullets.end() ? own.pattern : String(known->second);
        return result;
    }
    MutableString format;
    forEachPart(
        own.pattern,
        [&](int part) {
            if (part == level)
                format.append(inBraces(own.format));
            else
                format.clear();
        },
        [&](std::u16string_view text) { format.append(text); });
    result.markerFormat = std::move(format).take();
    if (result.markerFormat.view().starts_with(u'.'))
        result.markerFormat = result.markerFormat.substringFrom(1);
    return result;
}

// The text is "TAB marker TAB item": the first stop is where the marker begins, the second where the item
// does. Readers that make markers of their own put them at the first line's indent, before the first stop.
ParagraphStyle listItemStyle(const ParagraphProperties& properties, std::vector<std::uint32_t> lists)
{
    constexpr double Level = 36;
    constexpr double MarkerWidth = 25;
    constexpr double BeforeMarker = 11;
    ParagraphStyle style = properties.style();
    if (style.headIndent <= 0)
        style.headIndent = Level * static_cast<double>(lists.size());
    const bool isHanging = style.firstLineIndent > 0 && style.firstLineIndent < style.headIndent;
    const double marker
        = isHanging ? style.firstLineIndent : std::max(style.headIndent - MarkerWidth, style.headIndent / 4);
    style.tabStops.insert(style.tabStops.begin(), { { marker }, { style.headIndent } });
    style.firstLineIndent = std::max(marker - BeforeMarker, 0.0);
    style.lists = std::move(lists);
    return style;
}

String bulletOfSymbol(const String& bullet)
{
    if (bullet.length() != 1)
        return bullet;
    switch (bullet[0]) {
    case u'o': // In a typewriter font.
    case 0xF06F:
    case 0xF0A1:
        return String(u"\u25E6");
    case 0xF0A7:
    case 0xF06E:
        return String(u"\u25AA");
    case 0xF0A8:
        return String(u"\u25A1");
    case 0xF0FC:
        return String(u"\u2713");
    case 0x00B7:
        return String(u"\u2022");
    default:
        return bullet[0] >= 0xF000 && bullet[0] <= 0xF0FF ? String(u"\u2022") : bullet;
    }
}

} // namespace caddis::office
