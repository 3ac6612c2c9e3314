#pragma once

#include "html/CSSTokenizer.h"
#include "platform/richtext/TextStyle.h"

#include <optional>

/// The values of the properties that rich text can show. A px is a point here, as in the platform's import.
namespace caddis::css {

enum class Keyword : std::uint8_t {
    None,
    Auto,
    Normal,
    Bold,
    Bolder,
    Lighter,
    Italic,
    Oblique,
    Inline,
    Block,
    InlineBlock,
    ListItem,
    Table,
    InlineTable,
    TableRow,
    TableRowGroup,
    TableHeaderGroup,
    TableFooterGroup,
    TableCell,
    TableColumn,
    TableColumnGroup,
    TableCaption,
    Flex,
    InlineFlex,
    Grid,
    InlineGrid,
    FlowRoot,
    Contents,
    RunIn,
    Ruby,
    RubyText,
    Left,
    Right,
    Center,
    Justify,
    Start,
    End,
    WebkitCenter,
    WebkitLeft,
    WebkitRight,
    MatchParent,
    Baseline,
    Super,
    Sub,
    Top,
    Middle,
    Bottom,
    TextTop,
    TextBottom,
    Underline,
    Overline,
    LineThrough,
    Nowrap,
    Pre,
    PreWrap,
    PreLine,
    BreakSpaces,
    Capitalize,
    Uppercase,
    Lowercase,
    Ltr,
    Rtl,
    XxSmall,
    XSmall,
    Small,
    Medium,
    Large,
    XLarge,
    XxLarge,
    XxxLarge,
    Smaller,
    Larger,
    Thin,
    Thick,
    Hidden,
    Dotted,
    Dashed,
    Solid,
    Double,
    Groove,
    Ridge,
    Inset,
    Outset,
    Manual,
    Disc,
    Circle,
    Square,
    Decimal,
    DecimalLeadingZero,
    LowerAlpha,
    UpperAlpha,
    LowerLatin,
    UpperLatin,
    LowerRoman,
    UpperRoman,
    LowerGreek,
    Inherit,
    Initial,
    Unset,
    Revert,
    RevertLayer,
    Transparent,
    CurrentColor,
    Count,
};

/// Nil for a word that is not listed; letters in any case.
std::optional<Keyword> keywordNamed(std::u16string_view word);
std::u16string_view nameOf(Keyword keyword);

struct PropertyValue {
    enum class Kind : std::uint8_t {
        Keyword,
        Points,
        Em, ///< of the font's size
        RootEm, ///< of the root's
        Percent,
        Number,
        Color,
        Lines, ///< a set of decoration lines
        Text, ///< as written
        Unresolved, ///< holds var(): as written
    };
    enum DecorationLine : std::uint8_t { UnderlineLine = 1, ThroughLine = 2 };

    Kind kind = Kind::Keyword;
    Keyword keyword = Keyword::None;
    std::uint8_t lines = 0;
    double number = 0;
    TextColor color {};
    std::u16string_view text {};

    bool is(Keyword wanted) const { return kind == Kind::Keyword && keyword == wanted; }
    static PropertyValue of(Keyword keyword) { return { .keyword = keyword }; }
    static PropertyValue points(double number) { return { .kind = Kind::Points, .number = number }; }
    static PropertyValue colored(TextColor color) { return { .kind = Kind::Color, .color = color }; }
    static PropertyValue decorated(unsigned lines)
    {
        return { .kind = Kind::Lines, .lines = static_cast<std::uint8_t>(lines) };
    }
};

/// A number, a percentage or a length of known unit; nil for other tokens.
std::optional<PropertyValue> numberOf(const Token& token);

/// A colour that begins with `token`, whose further tokens are taken from `tokens`: a name, #rgb to
/// #rrggbbaa, rgb(), hsl() with commas or without.
std::optional<PropertyValue> colorFrom(const Token& token, Tokenizer& tokens);
/// A whole text as a colour.
std::optional<TextColor> colorOf(std::u16string_view text);
/// The same as a page's attribute has it, where "ff0000" is one as well.
std::optional<TextColor> legacyColorOf(std::u16string_view text);

} // namespace caddis::css
