#pragma once

#include "platform/richtext/TextStyle.h"

#include <unordered_map>

/// Inside this folder: what the styles of office documents say, before it is known what they build upon.
/// Lengths are points.
namespace caddis::office {

/// Of letters. What is nil comes from whatever these properties are laid over.
struct LetterProperties {
    using Paint = std::optional<TextColor>; ///< nil: the reader's own

    std::optional<String> font;
    std::optional<double> size;
    std::optional<double> sizeFactor; ///< to the size below
    std::optional<bool> bold;
    std::optional<bool> italic;
    std::optional<bool> hidden;
    std::optional<LineStyle> underline;
    std::optional<LineStyle> strikethrough;
    std::optional<Paint> foreground;
    std::optional<Paint> background;
    std::optional<int> superscript;
    std::optional<double> baselineOffset;
    std::optional<double> kern;

    /// Takes on what `over` says.
    void lay(const LetterProperties& over);
    CharacterStyle style() const;
};

/// Of paragraphs, likewise.
struct ParagraphProperties {
    struct LineHeight {
        double multiple = 0;
        double minimum = 0;
        double maximum = 0;
    };

    std::optional<TextAlignment> alignment;
    std::optional<WritingDirection> direction;
    std::optional<std::uint8_t> headerLevel;
    std::optional<double> leading; ///< indent
    std::optional<double> trailing;
    std::optional<double> firstLine; ///< counts from `leading`
    std::optional<double> before;
    std::optional<double> after;
    std::optional<LineHeight> lineHeight;
    std::optional<std::vector<TabStop>> tabStops;
    std::optional<String> list; ///< empty: none
    std::optional<int> listLevel;

    void lay(const ParagraphProperties& over);
    ParagraphStyle style() const;
};

struct Style {
    String parent;
    LetterProperties letters;
    ParagraphProperties paragraph;
    std::optional<double> cellBorder; ///< width, of a table's cells
};

/// The named styles of a document.
class StyleSheet {
public:
    /// What every paragraph builds upon.
    Style defaults;
    /// The style of paragraphs that name none; empty when there is none.
    String paragraphStyle;

    /// The style to be filled. Beyond 65,536 of them it is one that nobody sees.
    Style& define(const String& name);
    bool has(const String& name) const { return m_styles.contains(name); }

    /// The style with what it inherits, the defaults not among it; plain for a name without a style. Chains
    /// longer than 32 end there.
    const Style& resolved(const String& name) const;

private:
    std::unordered_map<String, Style> m_styles;
    mutable std::unordered_map<String, Style> m_resolved;
    Style m_surplus;
};

} // namespace caddis::office
