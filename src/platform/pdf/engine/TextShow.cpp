#include "platform/pdf/engine/TextShow.h"

#include <algorithm>

namespace caddis::pdf {

void TextSink::setBaseline(const Baseline& baseline)
{
    m_baseline = baseline;
    if (!m_replacement && m_hidden == 0)
        m_page.setBaseline(baseline);
}

bool TextSink::isVisible(double along) const
{
    if (m_visible.width <= 0 || m_visible.height <= 0)
        return true;
    const double x = along * m_baseline.directionX - m_baseline.across * m_baseline.directionY - m_visible.x;
    const double y = along * m_baseline.directionY + m_baseline.across * m_baseline.directionX - m_visible.y;
    const double margin = m_baseline.emAcross / 2;
    return x >= -margin && x <= m_visible.width + margin && y >= -margin && y <= m_visible.height + margin;
}

void TextSink::add(std::u16string_view text, double begin, double end)
{
    if (m_hidden > 0 || !isVisible((begin + end) / 2))
        return;
    if (!m_replacement) {
        m_page.add(text, begin, end);
        return;
    }
    if (!m_replacement->isPlaced) {
        m_replacement->isPlaced = true;
        m_replacement->baseline = m_baseline;
        m_replacement->begin = begin;
    }
    m_replacement->end = std::max(end, m_replacement->begin);
}

bool TextSink::beginReplacement(const String& text)
{
    if (m_replacement)
        return false;
    m_replacement.emplace().text = text;
    return true;
}

void TextSink::endReplacement()
{
    const auto replacement = std::exchange(m_replacement, std::nullopt);
    if (replacement && replacement->isPlaced) {
        m_page.setBaseline(replacement->baseline);
        m_page.add(replacement->text, replacement->begin, replacement->end);
    }
    m_page.setBaseline(m_baseline);
}

TextShow::TextShow(const TextState& state, const Matrix& matrix, TextSink& sink)
    : m_state(state)
    , m_sink(sink)
    , m_vertical(state.font->isVertical())
    , m_glyphScale(m_vertical ? state.size : state.size * state.scale)
{
    const double unitX = matrix.lengthOfX();
    const double unitY = matrix.lengthOfY();
    const double length = m_vertical ? unitY : unitX;
    const double sign = m_glyphScale < 0 ? -1 : 1;
    Baseline baseline;
    if (length > 0) {
        baseline.directionX = sign / length * (m_vertical ? -matrix.c : matrix.a);
        baseline.directionY = sign / length * (m_vertical ? -matrix.d : matrix.b);
    }
    const Point pen = matrix.apply(0, state.rise);
    baseline.across = pen.y * baseline.directionX - pen.x * baseline.directionY;
    m_origin = pen.x * baseline.directionX + pen.y * baseline.directionY;
    m_pageScale = sign * length;
    const double em = state.font->em();
    const double emX = std::fabs(state.size * state.scale) * unitX * em;
    const double emY = std::fabs(state.size) * unitY * em;
    baseline.emAlong = m_vertical ? emY : emX;
    baseline.emAcross = m_vertical ? emX : emY;
    if (TextStyles* const styles = m_sink.styles())
        baseline.style = styles->numberOf(state.font, emY);
    m_sink.setBaseline(baseline);
}

void TextShow::string(std::string_view bytes)
{
    const double spaceScale
        = m_vertical ? -1 : m_state.scale; // Spaces are measured along x and y, y upwards.
    while (!bytes.empty()) {
        const Character character = m_state.font->next(bytes);
        bytes.remove_prefix(character.bytes);
        const double width = character.advance * m_glyphScale;
        const double begin = m_origin + m_moved * m_pageScale;
        m_sink.add(character.text, begin, begin + width * m_pageScale);
        m_moved += width + (m_state.charSpace + (character.isSpaceCode ? m_state.wordSpace : 0)) * spaceScale;
    }
}

void TextShow::step(double thousandths)
{
    m_moved += (m_vertical ? thousandths : -thousandths) / 1000 * m_glyphScale;
}

} // namespace caddis::pdf
