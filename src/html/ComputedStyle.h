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
    double letterSpacing = 0;
    double textIndent = 0;
    double borderSpacing = 2;
    std::u16string_view listMarker; ///< a list's marker given as a text
    std::shared_ptr<const CustomProperties> customProperties; ///< null: none
    TextColor color {};
    int fontWeight = 400;
    Keyword textAlign = Keyword::Start;
    Keyword textTransform = Keyword::None;
    Keyword whiteSpace = Keyword::Normal;
    Keyword listStyle = Keyword::Disc;
    VerticalAlignment cellAlignment = VerticalAlignment::Middle; ///< from a row to its cells
    bool isItalic = false;
    bool isRightToLeft = false;
    bool hyphenates = false;

    // Not handed down, but they go on showing inside inline elements.
    std::uint8_t decoration = 0; ///< of PropertyValue::DecorationLine
    int superscript = 0;
    double baselineOffset = 0;
    std::optional<TextColor> background;

    // The element's own.
    Keyword display = Keyword::Inline;
    Keyword floating = Keyword::None;
    std::optional<TextColor> borderColor;
    double marginTop = 0;
    double marginBottom = 0;
    double marginLeft = 0;
    double marginRight = 0;
    std::optional<double> width; ///< points; percentages are not known
    std::optional<double> height;
    double padding = 0;
    double borderWidth = 0;

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
