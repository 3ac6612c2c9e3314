#include "platform/pdf/engine/TextPage.h"

#include <algorithm>
#include <cmath>

namespace caddis::pdf {

namespace {

constexpr double LineStep = 0.55; // All in em.
constexpr double BackStep = 1;
constexpr double OverlapStep = 0.1;
constexpr double SamePlace = 0.12;

constexpr double SameDirection = 0.98; // Cosine: 11 degrees.
constexpr std::size_t MostGlyphsOnALine = 16 * 1024;

// The mark that a spacing accent stands for; 0 for anything else.
char16_t combiningMark(char16_t accent)
{
    static constexpr std::u16string_view accents
        = u"`\u00B4^\u02C6~\u02DC\u00A8\u00AF\u02C9\u02D8\u02D9\u02DA\u02DD\u02C7\u00B8\u02DB";
    static constexpr std::u16string_view marks
        = u"\u0300\u0301\u0302\u0302\u0303\u0303\u0308\u0304\u0304\u0306\u0307\u030A\u030B\u030C\u0327\u0328";
    static_assert(accents.size() == marks.size());
    const auto found = accents.find(accent);
    return found == accents.npos ? u'\0' : marks[found];
}

bool isLetter(std::u16string_view text)
{
    if (text.size() != 1)
        return false;
    const char16_t unit = text[0];
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z')
        || (unit >= 0x00C0 && unit <= 0x024F && unit != 0x00D7 && unit != 0x00F7);
}

} // namespace

void TextPage::setBaseline(const Baseline& baseline)
{
    m_baseline = baseline;
    m_baselineIsNew = true;
}

void TextPage::add(std::u16string_view text, double begin, double end)
{
    const double em = m_baseline.emAlong;
    if (m_baselineIsNew) {
        m_baselineIsNew = false;
        const double cosine
            = m_baseline.directionX * m_line.directionX + m_baseline.directionY * m_line.directionY;
        const double step = std::fabs(m_baseline.across - m_line.across);
        if (cosine < SameDirection || step > LineStep * std::max(m_baseline.emAcross, m_line.emAcross))
            endLine();
        m_line = m_baseline;
    }
    if (!m_glyphs.empty()) {
        const double gap = begin - m_glyphs.back().end;
        if (gap < -OverlapStep * em && (isDrawnAgain(text, begin) || joinsAccent(text, begin, end)))
            return;
        if ((gap < -BackStep * em && !continuesToTheLeft(text, end)) || m_glyphs.size() >= MostGlyphsOnALine)
            endLine();
    }
    if (text.empty() && m_glyphs.empty())
        return;
    m_hasRightToLeft |= std::any_of(text.begin(), text.end(), isRightToLeft);
    m_leftmost = m_glyphs.empty() ? begin : std::min(m_leftmost, begin);
    m_glyphs.push_back({ static_cast<std::uint32_t>(m_units.size()), static_cast<std::uint32_t>(text.size()),
        begin, end, static_cast<float>(em), text == u" ", m_baseline.style });
    m_units.append(text);
}

// Right-to-left text in logical order: each word stands left of all before it.
bool TextPage::continuesToTheLeft(std::u16string_view text, double end) const
{
    const bool isFromTheRight = std::any_of(text.begin(), text.end(), isRightToLeft);
    const auto last = m_glyphs.back().text(m_units);
    return (isFromTheRight || (m_hasRightToLeft && std::any_of(last.begin(), last.end(), isRightToLeft)))
        && end <= m_leftmost + m_baseline.emAlong / 2;
}

// Bold type without a bold font, and shadows: the same glyphs again, a hair beside the first ones.
bool TextPage::isDrawnAgain(std::u16string_view text, double begin)
{
    const double tolerance = SamePlace * m_baseline.emAlong;
    const auto repeats = [&](std::size_t index) {
        return index < m_glyphs.size() && std::fabs(m_glyphs[index].begin - begin) <= tolerance
            && m_glyphs[index].text(m_units) == text;
    };
    if (repeats(m_again) || repeats(m_again = m_glyphs.size() - 1))
        return ++m_again, true;
    const auto found = std::lower_bound(m_glyphs.begin(), m_glyphs.end(), begin - tolerance,
        [](const PlacedGlyph& glyph, double place) { return glyph.begin < place; });
    m_again = static_cast<std::size_t>(found - m_glyphs.begin());
    return repeats(m_again) && (++m_again, true);
}

// Type without accented letters draws them as two: the accent over its letter, before or after it.
bool TextPage::joinsAccent(std::u16string_view text, double begin, double end)
{
    PlacedGlyph& last = m_glyphs.back();
    const auto before = last.text(m_units);
    const double middleBefore = (last.begin + last.end) / 2;
    const double middle = (begin + end) / 2;
    char16_t letter = 0;
    char16_t mark = 0;
    if (before.size() == 1 && isLetter(text) && middleBefore > begin && middleBefore < end) {
        mark = combiningMark(before[0]);
        letter = text[0];
    } else if (text.size() == 1 && isLetter(before) && middle > last.begin && middle < last.end) {
        mark = combiningMark(text[0]);
        letter = before[0];
        begin = last.begin;
        end = last.end;
    }
    if (mark == 0)
        return false;
    const bool isDotless = letter == u'\u0131' || letter == u'\u0237';
    m_units.resize(last.first);
    m_units += isDotless ? (letter == u'\u0131' ? u'i' : u'j') : letter;
    m_units += mark;
    last.count = 2;
    last.begin = begin;
    last.end = end;
    return true;
}

void TextPage::endLine()
{
    if (m_glyphs.empty())
        return;
    m_lineStart = m_text.length() + !m_text.isEmpty();
    if (m_hasRightToLeft)
        putInLogicalOrder(m_glyphs, m_units);
    emitInOrder();
    m_glyphs.clear();
    m_units.clear();
    m_hasRightToLeft = false;
    m_again = 0;
}

void TextPage::emitInOrder()
{
    bool blank = false;
    double end = m_glyphs.front().begin;
    for (const PlacedGlyph& glyph : m_glyphs) {
        blank |= glyph.isBlank || glyph.isApartFrom(end);
        end = glyph.end;
        if (glyph.isBlank || glyph.count == 0)
            continue;
        emit(glyph, blank);
        blank = false;
    }
}

void TextPage::emit(const PlacedGlyph& glyph, bool afterBlank)
{
    if (m_text.length() < m_lineStart)
        m_text.append(u'\n');
    else if (afterBlank && m_text.length() > m_lineStart)
        m_text.append(u' ');
    if (m_styles.empty() || m_styles.back().style != glyph.style)
        m_styles.push_back({ m_text.length(), glyph.style });
    m_text.append(glyph.text(m_units));
}

String TextPage::take() &&
{
    endLine();
    return std::move(m_text).take();
}

PDFStyledText TextPage::take(const TextStyles& styles) &&
{
    PDFStyledText result { std::move(*this).take(), {} };
    for (std::size_t index = 0; index < m_styles.size(); ++index) {
        const bool isLast = index + 1 == m_styles.size();
        const std::size_t end = isLast ? result.string.length() : m_styles[index + 1].place;
        const PDFTextStyle& style = styles[m_styles[index].style];
        // Two fonts may be subsets of one.
        if (result.runs.empty() || result.runs.back().style != style)
            result.runs.push_back({ 0, style });
        result.runs.back().length += end - m_styles[index].place;
    }
    return result;
}

} // namespace caddis::pdf
