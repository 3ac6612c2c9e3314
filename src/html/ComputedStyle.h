#pragma once

#include "html/CSSDeclarations.h"

#include <array>
#include <map>
#include <memory>
#include <string>

/// What an element looks like when all that is said of it has been weighed.
namespace caddis::css {

struct ComputedStyle {
    using CustomProperties = std::map<std::u16string, std::u16string, std::less<>>;

    // Handed down to the elements inside.
    String fontFamily { u"Times" };
    double fontSize = 12; ///< points
    int fontWeight = 400;
    bool isItalic = false;
    TextColor color {};
    Keyword textAlign = Keyword::Start;
    Keyword textTransform = Keyword::None;
    Keyword whiteSpace = Keyword::Normal;
    Keyword listStyle = Keyword::Disc;
    std::u16string_view listMarker; ///< a list's marker given as a text
    bool isRightToLeft = false;
    bool hyphenates = false;
    double letterSpacing = 0;
    double textIndent = 0;
    double borderSpacing = 2;
    VerticalAlignment cellAlignment = VerticalAlignment::Middle; ///< from a row to its cells
    std::shared_ptr<const CustomProperties> customProperties; ///< null: none

    // Not handed down, but they go on showing inside inline elements.
    std::uint8_t decoration = 0; ///< of PropertyValue::DecorationLine
    std::optional<TextColor> background;
    int superscript = 0;
    double baselineOffset = 0;

    // The element's own.
    Keyword display = Keyword::Inline;
    Keyword floating = Keyword::None;
    double marginTop = 0;
    double marginBottom = 0;
    double marginLeft = 0;
    double marginRight = 0;
    std::optional<double> width; ///< points; percentages are not known
    std::optional<double> height;
    double padding = 0;
    double borderWidth = 0;
    std::optional<TextColor> borderColor;

    bool isHidden() const
    {
        return display == Keyword::None || display == Keyword::TableColumn
            || display == Keyword::TableColumnGroup;
    }
    bool isTablePart() const
    {
        return display == Keyword::Table || display == Keyword::InlineTable
            || (display >= Keyword::TableRow && display <= Keyword::TableCaption);
    }
    bool isBlock() const;
    bool keepsSpaces() const { return whiteSpace >= Keyword::Pre && whiteSpace <= Keyword::BreakSpaces; }
};

/// The value that won for each property; null where nothing was said.
using WinningValues = std::array<const PropertyValue*, static_cast<std::size_t>(Property::Count)>;

/// The style of an element inside one of `parent`'s. `rootFontSize` is that of the html element, 0 for
/// itself.
ComputedStyle computedStyle(const ComputedStyle& parent, const WinningValues& values, double rootFontSize);

} // namespace caddis::css
