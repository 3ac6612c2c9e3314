#pragma once

#include "platform/pdf/engine/Font.h"
#include "platform/pdf/engine/Matrix.h"
#include "platform/pdf/engine/TextPage.h"

#include <memory>
#include <optional>

namespace caddis::pdf {

/// The text part of the graphics state (ISO 32000-1, 9.3).
struct TextState {
    std::shared_ptr<Font> font;
    double size = 0;
    double charSpace = 0;
    double wordSpace = 0;
    double scale = 1;
    double leading = 0;
    double rise = 0;
};

/// Text that the document gives for what is drawn, and where that is drawn.
struct Replacement {
    String text;
    bool isPlaced = false;
    Baseline baseline;
    double begin = 0;
    double end = 0;
};

/// Where shown text ends up: on the page, nowhere while its layer is hidden, or behind the replacement that
/// the document itself gives for it (ActualText).
class TextSink {
public:
    /// `visible` is the part of the page that is shown, in page coordinates; an empty one hides nothing.
    /// `styles` is told the styles of what is shown; null when nobody wants to know.
    explicit TextSink(Rect visible, TextStyles* styles = nullptr)
        : m_visible(visible)
        , m_styles(styles)
    {
    }

    void setBaseline(const Baseline& baseline);
    void add(std::u16string_view text, double begin, double end);

    void hide() { ++m_hidden; }
    void unhide() { --m_hidden; }
    /// Until endReplacement the text is `text` as a whole, at the place of what is shown. False inside
    /// another one.
    bool beginReplacement(const String& text);
    void endReplacement();

    TextPage& page() { return m_page; }
    TextStyles* styles() const { return m_styles; }

private:
    bool isVisible(double along) const;

    Rect m_visible;
    TextStyles* m_styles;
    TextPage m_page;
    Baseline m_baseline;
    std::size_t m_hidden = 0;
    std::optional<Replacement> m_replacement;
};

/// One operator that shows text: strings and the steps between them, on one baseline.
class TextShow {
public:
    /// `matrix` is from text space to page space.
    TextShow(const TextState& state, const Matrix& matrix, TextSink& sink);

    void string(std::string_view bytes);
    /// A number of TJ, in thousandths of the size, against the x or the y axis.
    void step(double thousandths);

    /// How far the pen has moved, in text space.
    Point moved() const { return m_vertical ? Point { 0, -m_moved } : Point { m_moved, 0 }; }

private:
    const TextState& m_state;
    TextSink& m_sink;
    bool m_vertical;
    double m_glyphScale; ///< text space units per unit of a glyph's advance
    double m_pageScale = 0; ///< page units along the baseline per unit of text space
    double m_origin = 0; ///< along the baseline
    double m_moved = 0; ///< along the writing direction, in text space
};

} // namespace caddis::pdf
