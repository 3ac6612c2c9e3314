// Characters and breaks.

#include "html/Converter.h"
#include "text/CharacterTables.h"

namespace caddis::html {

using css::ComputedStyle;
using css::Keyword;

namespace {

constexpr double TabInterval = 36;
constexpr int BoldWeight = 600;

constexpr bool collapses(char16_t unit) { return css::isSpace(unit) || unit == 0x200B; }

// Behind these no blank shows.
constexpr bool endsLine(char16_t unit)
{
    return unit == u'\n' || unit == u'\r' || unit == u'\t' || unit == u'\f' || unit == 0x85
        || unit == LineSeparator || unit == 0x2029;
}

CharacterStyle looksOf(const ComputedStyle& style)
{
    constexpr TextColor Black {};
    CharacterStyle looks;
    looks.font.name = style.fontFamily;
    looks.font.size = style.fontSize;
    looks.font.bold = style.fontWeight >= BoldWeight;
    looks.font.italic = style.isItalic;
    if (style.color != Black)
        looks.foreground = style.color;
    if (!style.isBlock() && !style.isTablePart())
        looks.background = style.background;
    if (style.decoration & css::PropertyValue::UnderlineLine)
        looks.underline = LineStyle::Single;
    if (style.decoration & css::PropertyValue::ThroughLine)
        looks.strikethrough = LineStyle::Single;
    looks.superscript = style.superscript;
    looks.baselineOffset = style.baselineOffset;
    looks.kern = style.letterSpacing;
    return looks;
}

TextAlignment alignmentOf(const ComputedStyle& style)
{
    switch (style.textAlign) {
    case Keyword::Left:
    case Keyword::WebkitLeft:
        return TextAlignment::Left;
    case Keyword::Center:
    case Keyword::WebkitCenter:
        return TextAlignment::Center;
    case Keyword::Right:
    case Keyword::WebkitRight:
        return TextAlignment::Right;
    case Keyword::Justify:
        return TextAlignment::Justified;
    case Keyword::End:
        return style.isRightToLeft ? TextAlignment::Left : TextAlignment::Right;
    default:
        return TextAlignment::Natural;
    }
}

char16_t transformed(char16_t unit, Keyword transform, bool beginsWord)
{
    if (transform == Keyword::Lowercase)
        return tables::lowerChars[unit];
    const bool isUpper = transform == Keyword::Uppercase || (transform == Keyword::Capitalize && beginsWord);
    return isUpper ? tables::upperChars[unit] : unit;
}

} // namespace

const CharacterStyle& Converter::characterStyle()
{
    const ComputedStyle* const style = m_frames.back().style;
    if (m_characterOf != style) {
        m_character = looksOf(*style);
        m_characterOf = style;
    }
    m_character.link = m_link;
    return m_character;
}

char16_t Converter::lastUnit() const
{
    const std::u16string_view text = m_builder.view();
    return text.empty() ? u'\n' : text.back();
}

void Converter::appendUnits(std::u16string_view units)
{
    m_builder.append(units, characterStyle());
    m_isSoft = false;
}

void Converter::text(std::u16string_view units)
{
    const ComputedStyle& style = *m_frames.back().style;
    if (style.keepsSpaces() && style.whiteSpace != Keyword::PreLine)
        preservedText(units);
    else
        collapsedText(units, style.textTransform, style.whiteSpace == Keyword::PreLine);
}

void Converter::collapsedText(std::u16string_view units, Keyword transform, bool keepsBreaks)
{
    const char16_t last = lastUnit();
    bool suppresses = endsLine(last) || (last == u' ' && m_isSoft);
    bool endsWithBlank = false;
    m_buffer.clear();
    for (std::size_t at = 0; at < units.size();) {
        const bool isBlank = collapses(units[at]);
        std::size_t end = at + 1;
        while (end < units.size() && collapses(units[end]) == isBlank)
            ++end;
        const std::u16string_view run = units.substr(at, end - at);
        if (!isBlank) {
            m_buffer += run;
            if (transform != Keyword::None) {
                for (std::size_t index = m_buffer.size() - run.size(); index < m_buffer.size(); ++index)
                    m_buffer[index]
                        = transformed(m_buffer[index], transform, index + run.size() == m_buffer.size());
            }
        } else if (keepsBreaks && run.find(u'\n') != run.npos) {
            m_buffer += u'\n';
        } else if (!suppresses) {
            m_buffer += u' ';
        }
        suppresses = isBlank;
        endsWithBlank = isBlank;
        at = end;
    }
    if (m_buffer.empty())
        return;
    if (keepsBreaks)
        preservedText(std::u16string(m_buffer));
    else
        appendUnits(m_buffer);
    m_isSoft = endsWithBlank;
}

// A style counts for whole paragraphs, so that those which end in the text get theirs before the next begins.
void Converter::preservedText(std::u16string_view units)
{
    const std::size_t lastBreak = units.rfind(u'\n');
    const std::size_t ended = lastBreak == units.npos ? 0 : lastBreak + 1;
    if (ended > 0) {
        m_builder.append(units.substr(0, ended), characterStyle());
        markItem();
        flushParagraphs();
        m_isSoft = false;
    }
    if (ended < units.size())
        appendUnits(units.substr(ended));
}

// A break takes the place of a blank or a line separator that only stands for the end of a line.
void Converter::dropSoftEnd()
{
    const char16_t last = lastUnit();
    if (m_isSoft && m_builder.length() > m_flushed && (last == u' ' || last == LineSeparator))
        m_builder.truncate(m_builder.length() - 1);
}

void Converter::endParagraph(bool evenIfEmpty, bool replacesSoftEnd)
{
    if (!evenIfEmpty && lastUnit() == u'\n')
        return;
    if (replacesSoftEnd)
        dropSoftEnd();
    markItem();
    m_builder.append(u"\n", characterStyle());
    m_isSoft = true;
    flushParagraphs();
}

void Converter::endLine()
{
    if (lastUnit() == u' ')
        dropSoftEnd();
    constexpr char16_t Separator = LineSeparator;
    m_builder.append({ &Separator, 1 }, characterStyle());
    m_isSoft = true;
}

void Converter::endLineOnce()
{
    const char16_t last = lastUnit();
    if (last != u'\n' && !(last == LineSeparator && m_isSoft))
        endLine();
}

void Converter::flushParagraphs()
{
    if (m_builder.length() == m_flushed)
        return;
    m_builder.endParagraphs(paragraphStyle());
    m_flushed = m_builder.length();
}

ParagraphStyle Converter::paragraphStyle() const
{
    ParagraphStyle style;
    style.defaultTabInterval = TabInterval;
    style.cells = m_cells;
    for (const OpenList& list : m_lists) {
        if (list.number)
            style.lists.push_back(*list.number);
    }
    const std::size_t number = m_frames.back().block;
    if (number == NoFrame)
        return style;
    const Frame& block = m_frames[number];
    style.alignment = alignmentOf(*block.style);
    if (block.style->isRightToLeft)
        style.direction = WritingDirection::RightToLeft;
    style.hyphenationFactor = block.style->hyphenates ? 1 : 0;
    paragraphIndents(style, block);
    return style;
}

void Converter::paragraphIndents(ParagraphStyle& style, const Frame& block) const
{
    constexpr double ListIndent = 36;
    constexpr double MarkerWidth = 25;
    const ComputedStyle& looks = *block.style;
    style.headIndent = style.firstLineIndent = block.indent;
    if (block.tag == Tag::P || block.tag == Tag::Li || isHeading(block.tag)) {
        style.headIndent += looks.marginLeft;
        style.firstLineIndent = style.headIndent + looks.textIndent;
        style.tailIndent = looks.marginRight > 0 ? -looks.marginRight : 0;
        style.spacingAfter = std::max(looks.marginBottom, 0.0);
        if (isHeading(block.tag))
            style.headerLevel
                = static_cast<std::uint8_t>(static_cast<int>(block.tag) - static_cast<int>(Tag::H1) + 1);
    }
    if (style.lists.empty())
        return;
    const double indent = ListIndent * static_cast<double>(style.lists.size());
    style.headIndent += indent;
    style.tabStops = { { style.headIndent - MarkerWidth }, { style.headIndent } };
}

} // namespace caddis::html
