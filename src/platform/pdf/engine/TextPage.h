#pragma once

#include "platform/base/MutableString.h"
#include "platform/pdf/engine/RightToLeft.h"
#include "platform/pdf/engine/TextStyles.h"

#include <string>
#include <string_view>
#include <vector>

namespace caddis::pdf {

/// Where glyphs are put: a line of text in the plane of the page, and how large the glyphs on it are.
struct Baseline {
    double directionX = 1; ///< unit vector along which text runs
    double directionY = 0;
    double across = 0; ///< the line's distance from the origin, to the left of the direction
    double emAlong = 1; ///< the font's size along the line
    double emAcross = 1; ///< and across it
    TextStyles::Number style = 0;
};

/// Makes lines and words of glyphs that come in the order in which they are drawn.
///
/// The state is one line: glyphs with their places along it. A glyph starts a new line when it lies off the
/// line (0.55 em across), points another way, or steps back by more than an em. Inside a line a gap of more
/// than 0.17 em is a blank, as is any number of drawn blanks. Text drawn twice at the same place is taken
/// once. A line with right-to-left letters is put in order by places when it is complete; there glyphs may
/// come from the right as from the left.
class TextPage {
public:
    void setBaseline(const Baseline& baseline);
    /// `begin` and `end` along the baseline's direction.
    void add(std::u16string_view text, double begin, double end);

    std::size_t length() const { return m_text.length(); }
    /// Ends the last line and hands the text over: lines apart by U+000A.
    String take() &&;
    /// The same with the styles that the baselines had.
    PDFStyledText take(const TextStyles& styles) &&;

private:
    bool continuesToTheLeft(std::u16string_view text, double end) const;
    bool isDrawnAgain(std::u16string_view text, double begin);
    bool joinsAccent(std::u16string_view text, double begin, double end);
    void endLine();
    void emitInOrder();
    void emit(const PlacedGlyph& glyph, bool afterBlank);

    struct StyledFrom {
        std::size_t place; ///< in m_text
        TextStyles::Number style;
    };

    MutableString m_text;
    std::vector<StyledFrom> m_styles;
    Baseline m_baseline;
    bool m_baselineIsNew = true; ///< no glyph has been held against it yet
    Baseline m_line; ///< that of the last glyph
    std::u16string m_units;
    std::vector<PlacedGlyph> m_glyphs;
    double m_leftmost = 0;
    bool m_hasRightToLeft = false;
    std::size_t m_again = 0; ///< the glyph that the next one would repeat, when text is drawn again
    std::size_t m_lineStart = 0; ///< in m_text
};

} // namespace caddis::pdf
