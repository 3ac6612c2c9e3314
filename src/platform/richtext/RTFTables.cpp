#include "platform/richtext/RTFTables.h"

#include <algorithm>
#include <array>

namespace caddis::rtf {

namespace {

constexpr std::int32_t DeepestLevel = 8; // Levels count from 0; RTF knows nine.

struct CharsetRow {
    std::int32_t charset;
    std::int32_t codePage;
};

constexpr std::array<CharsetRow, 16> Charsets { { { 77, 10000 }, { 128, 932 }, { 129, 949 }, { 130, 1361 },
    { 134, 936 }, { 136, 950 }, { 161, 1253 }, { 162, 1254 }, { 163, 1258 }, { 177, 1255 }, { 178, 1256 },
    { 186, 1257 }, { 204, 1251 }, { 222, 874 }, { 238, 1250 }, { 254, 437 } } };

struct CodePageRow {
    std::int32_t codePage;
    CFStringEncoding encoding;
};

using enum CFStringEncoding;
constexpr std::array<CodePageRow, 33> CodePages { { { 437, DOSLatinUS }, { 737, DOSGreek },
    { 775, DOSBalticRim }, { 850, DOSLatin1 }, { 852, DOSLatin2 }, { 855, DOSCyrillic }, { 857, DOSTurkish },
    { 860, DOSPortuguese }, { 861, DOSIcelandic }, { 862, DOSHebrew }, { 863, DOSCanadianFrench },
    { 864, DOSArabic }, { 865, DOSNordic }, { 866, DOSRussian }, { 869, DOSGreek2 }, { 874, DOSThai },
    { 932, DOSJapanese }, { 936, DOSChineseSimplif }, { 949, DOSKorean }, { 950, DOSChineseTrad },
    { 1250, WindowsLatin2 }, { 1251, WindowsCyrillic }, { 1253, WindowsGreek }, { 1254, WindowsLatin5 },
    { 1255, WindowsHebrew }, { 1256, WindowsArabic }, { 1257, WindowsBalticRim }, { 1258, WindowsVietnamese },
    { 1361, WindowsKoreanJohab }, { 10000, MacRoman }, { 10029, MacCentralEurRoman }, { 54936, GB18030 },
    { 65001, UTF8 } } };

std::int32_t clampedPart(std::int32_t value) { return std::clamp(value, 0, TextColor::Full); }

// By \levelnfc (RTF 1.9.1, "List Levels").
std::u16string_view markerOfFormat(std::int32_t numberFormat)
{
    constexpr std::int32_t Bullet = 23;
    constexpr std::int32_t NoNumber = 255;
    constexpr std::array<std::u16string_view, 5> Counted { u"{decimal}", u"{upper-roman}", u"{lower-roman}",
        u"{upper-alpha}", u"{lower-alpha}" };
    if (numberFormat >= 0 && numberFormat < std::int32_t { Counted.size() })
        return Counted[static_cast<std::size_t>(numberFormat)];
    if (numberFormat == NoNumber)
        return u"{none}";
    return numberFormat == Bullet ? u"{disc}" : u"{decimal}";
}

// The bullets of office programs, two of them of symbol fonts.
std::u16string_view bulletFormat(char16_t bullet, std::u16string_view other)
{
    switch (bullet) {
    case u'o':
    case 0x25E6:
        return u"{circle}";
    case 0x25AA:
    case 0xF0A7:
        return u"{square}";
    case u'-':
    case 0x2013:
    case 0x2043:
        return u"{hyphen}";
    default:
        return other;
    }
}

} // namespace

CFStringEncoding encodingOfCharset(std::int32_t charset)
{
    const auto row = std::ranges::find(Charsets, charset, &CharsetRow::charset);
    return row == Charsets.end() ? InvalidId : encodingOfCodePage(row->codePage);
}

CFStringEncoding encodingOfCodePage(std::int32_t codePage)
{
    const auto row = std::ranges::find(CodePages, codePage, &CodePageRow::codePage);
    return row == CodePages.end() ? WindowsLatin1 : row->encoding;
}

void FontTable::takeText(std::u16string_view units)
{
    for (const char16_t unit : units) {
        if (unit != u';') {
            m_name += unit;
            continue;
        }
        const std::size_t begin = m_name.find_first_not_of(u' ');
        if (begin != std::u16string::npos)
            current().name = String(std::u16string_view(m_name).substr(begin));
        m_name.clear();
    }
}

const FontEntry* FontTable::find(std::int32_t number) const
{
    const auto found = m_fonts.find(number);
    return found == m_fonts.end() ? nullptr : &found->second;
}

void ColorTable::setPart(char part, std::int32_t value)
{
    if (!m_current)
        m_current = TextColor();
    const auto byte = static_cast<std::uint8_t>(std::clamp(value, 0, 255));
    const std::int32_t scaled = TextColor::fromBytes(byte, 0, 0).red;
    (part == 'r' ? m_current->red : part == 'g' ? m_current->green : m_current->blue) = scaled;
}

void ColorTable::takeText(std::u16string_view units)
{
    for (const char16_t unit : units) {
        if (unit == u';') {
            m_colors.push_back(m_current);
            m_current.reset();
        }
    }
}

void ColorTable::expandedModel(bool isGray)
{
    m_isGray = isGray;
    m_hasModel = true;
    m_parts.clear();
}

void ColorTable::expandedPart(std::int32_t value)
{
    if (m_parts.size() < 4)
        m_parts.push_back(clampedPart(value));
}

void ColorTable::takeExpandedText(std::u16string_view units)
{
    for (const char16_t unit : units) {
        if (unit != u';')
            continue;
        const std::size_t parts = m_isGray ? 1 : 3;
        std::optional<TextColor> color;
        if (m_hasModel && m_parts.size() >= parts) {
            color = m_isGray ? TextColor { m_parts[0], m_parts[0], m_parts[0] }
                             : TextColor { m_parts[0], m_parts[1], m_parts[2] };
            if (m_parts.size() > parts)
                color->alpha = m_parts[parts];
        }
        m_expanded.push_back(color);
        m_hasModel = false;
        m_parts.clear();
    }
}

std::optional<TextColor> ColorTable::color(std::int32_t index) const
{
    const auto place = static_cast<std::size_t>(index);
    if (index < 0 || place >= m_colors.size() || !m_colors[place])
        return std::nullopt;
    return place < m_expanded.size() && m_expanded[place] ? m_expanded[place] : m_colors[place];
}

void ListTable::setFormat(std::int32_t numberFormat)
{
    if (!m_levels.empty())
        m_levels.back().markerFormat = String(markerOfFormat(numberFormat));
}

void ListTable::setMarker(std::u16string_view marker)
{
    if (m_levels.empty() || marker.empty())
        return;
    m_levels.back().markerFormat = String(marker);
    m_hasMarker = true;
}

// A character that counts the others, and those; characters below 9 stand for the numbers of that level. The
// last number is the item's own, those of the levels around it are not known to a list.
void ListTable::setLevelText(std::u16string_view text)
{
    constexpr char16_t Levels = 9;
    if (m_levels.empty() || m_hasMarker || text.size() < 2)
        return;
    text = text.substr(1, text[0]);
    const auto isNumber = [](char16_t unit) { return unit < Levels; };
    const auto last = std::find_if(text.rbegin(), text.rend(), isNumber);
    TextList& level = m_levels.back();
    if (last == text.rend()) {
        level.markerFormat = String(bulletFormat(text.front(), level.markerFormat));
        return;
    }
    const auto number = static_cast<std::size_t>(text.rend() - last) - 1;
    const bool isOnly
        = std::ranges::find_if(text, isNumber) == text.begin() + static_cast<std::ptrdiff_t>(number);
    MutableString format;
    if (isOnly)
        format.append(text.substr(0, number));
    format.append(level.markerFormat).append(text.substr(number + 1));
    level.markerFormat = std::move(format).take();
}

void ListTable::setStart(std::int32_t number)
{
    if (!m_levels.empty())
        m_levels.back().startingItemNumber = number;
}

std::vector<std::uint32_t> ListTable::lists(
    std::int32_t number, std::int32_t level, AttributedStringBuilder& builder)
{
    const auto list = m_overrides.find(number);
    const auto levels = list == m_overrides.end() ? m_lists.end() : m_lists.find(list->second);
    std::vector<std::uint32_t> result;
    if (levels == m_lists.end())
        return result;
    for (std::int32_t step = 0; step <= std::clamp(level, 0, DeepestLevel); ++step) {
        const auto [used, isNew] = m_used.try_emplace({ number, step }, 0U);
        const auto place = static_cast<std::size_t>(step);
        if (isNew)
            used->second
                = builder.addList(place < levels->second.size() ? levels->second[place] : TextList());
        result.push_back(used->second);
    }
    return result;
}

} // namespace caddis::rtf
