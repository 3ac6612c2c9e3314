#pragma once

#include "platform/base/String.h"

#include <cstdint>
#include <optional>
#include <vector>

/// What letters and paragraphs of rich text look like. Lengths are points, positions count from the margin.
namespace caddis {

/// sRGB, each part from 0 to 100,000: the unit of RTF's colour tables, which also tells apart all 256 steps
/// of an eight-bit part.
struct TextColor {
    static constexpr std::int32_t Full = 100000;

    std::int32_t red = 0;
    std::int32_t green = 0;
    std::int32_t blue = 0;
    std::int32_t alpha = Full;

    /// Parts from 0 to 255; `alpha` from 0 to 1.
    static TextColor fromBytes(std::uint8_t red, std::uint8_t green, std::uint8_t blue, double alpha = 1);
    /// A part as it is on a scale from 0 to 255.
    static std::uint8_t byte(std::int32_t part);

    friend constexpr bool operator==(const TextColor&, const TextColor&) = default;
};

struct Font {
    /// A family ("Helvetica") or, in what the platform wrote, a face ("Helvetica-Bold"); bold and italic are
    /// said in addition.
    String name { u"Helvetica" };
    double size = 12;
    bool bold = false;
    bool italic = false;

    friend bool operator==(const Font&, const Font&) = default;
};

/// Numbers as in the platform's attributes.
enum class LineStyle : std::uint8_t { None = 0, Single = 1, Thick = 2, Double = 9 };

/// How a run of characters looks.
struct CharacterStyle {
    static constexpr std::uint32_t NoAttachment = 0xFFFFFFFF;

    Font font;
    LineStyle underline = LineStyle::None;
    LineStyle strikethrough = LineStyle::None;
    std::optional<TextColor> foreground; ///< nil: the reader's text colour, black on paper
    std::optional<TextColor> background; ///< nil: none
    int superscript = 0; ///< levels up; negative: down
    double baselineOffset = 0; ///< up
    double kern = 0; ///< added behind each character
    String link; ///< an absolute URL or whatever stood for one; empty: none
    /// Index into AttributedString::attachments; the run is then one U+FFFC.
    std::uint32_t attachment = NoAttachment;

    friend bool operator==(const CharacterStyle&, const CharacterStyle&) = default;
};

enum class TextAlignment : std::uint8_t { Natural, Left, Center, Right, Justified };
enum class WritingDirection : std::uint8_t { Natural, LeftToRight, RightToLeft };
enum class TabAlignment : std::uint8_t { Left, Center, Right, Decimal };

struct TabStop {
    double location = 0;
    TabAlignment alignment = TabAlignment::Left;

    friend bool operator==(const TabStop&, const TabStop&) = default;
};

/// A list that paragraphs belong to. Its markers are text of the paragraphs, "TAB marker TAB" before the
/// item.
struct TextList {
    /// "{disc}", "{decimal}." and so on: a CSS list style in braces, and what stands around it.
    String markerFormat { u"{disc}" };
    std::int32_t startingItemNumber = 1;

    /// The marker of the item with that number: "•", "3.", "iv)". Formats that are not known give a bullet.
    String marker(std::int32_t itemNumber) const;

    friend bool operator==(const TextList&, const TextList&) = default;
};

enum class VerticalAlignment : std::uint8_t { Top, Middle, Bottom };

/// Between a cell's text and its sides. As it is made: what office programs give a cell.
struct CellPadding {
    double top = 0;
    double left = 5.4;
    double bottom = 0;
    double right = 5.4;

    static constexpr CellPadding ofAllSides(double points) { return { points, points, points, points }; }
    friend bool operator==(const CellPadding&, const CellPadding&) = default;
};

/// One cell, as its paragraphs know it. Every paragraph of a cell carries an equal record, and the cell's
/// last one ends with a line break like any other.
struct TableCell {
    enum BorderSide : std::uint8_t { Top = 1, Left = 2, Bottom = 4, Right = 8, AllSides = 15 };

    std::uint32_t table = 0; ///< cells of one table share the number; index into AttributedString::tables
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    std::uint32_t rowSpan = 1;
    std::uint32_t columnSpan = 1;
    double width = 0; ///< 0: as the table divides it
    double minimumHeight = 0; ///< of the row, which is as high as its highest cell
    double borderWidth = 0; ///< 0: no border
    std::uint8_t borderSides = AllSides; ///< which sides have it, bits of BorderSide
    VerticalAlignment alignment = VerticalAlignment::Top;
    CellPadding padding {};
    std::optional<TextColor> borderColor {};
    std::optional<TextColor> background {};

    friend bool operator==(const TableCell&, const TableCell&) = default;
};

struct TextTable {
    std::uint32_t columns = 0;

    friend bool operator==(const TextTable&, const TextTable&) = default;
};

/// How a paragraph looks, and what it is part of.
struct ParagraphStyle {
    TextAlignment alignment = TextAlignment::Natural;
    WritingDirection direction = WritingDirection::Natural;
    std::uint8_t headerLevel = 0; ///< 1 to 6 for a heading
    double firstLineIndent = 0; ///< from the leading margin, as headIndent
    double headIndent = 0;
    double tailIndent = 0; ///< not positive: from the trailing margin
    double spacingBefore = 0;
    double spacingAfter = 0;
    double lineSpacing = 0; ///< between lines
    double lineHeightMultiple = 0; ///< 0: as the font has it
    double minimumLineHeight = 0;
    double maximumLineHeight = 0; ///< 0: no limit
    double defaultTabInterval = 0; ///< 0: the document's
    double hyphenationFactor = 0;
    std::vector<TabStop> tabStops;
    std::vector<std::uint32_t> lists; ///< indexes into AttributedString::lists, the outermost first
    std::vector<TableCell> cells; ///< the outermost table's first

    friend bool operator==(const ParagraphStyle&, const ParagraphStyle&) = default;
};

} // namespace caddis
