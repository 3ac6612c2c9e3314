#pragma once

#include "html/CSSValues.h"

#include <vector>

/// The declarations of a rule or of a style attribute.
namespace caddis::css {

enum class Property : std::uint8_t {
    FontSize, ///< first, as other lengths depend on it
    Color, ///< second, as other colours do
    BackgroundColor,
    BorderColor,
    BorderSpacing,
    BorderStyle,
    BorderWidth,
    Direction,
    Display,
    Float,
    FontFamily,
    FontStyle,
    FontWeight,
    Height,
    Hyphens,
    LetterSpacing,
    ListStyleType,
    MarginBottom,
    MarginLeft,
    MarginRight,
    MarginTop,
    Padding,
    TextAlign,
    TextDecoration,
    TextIndent,
    TextTransform,
    VerticalAlign,
    WhiteSpace,
    Width,
    Custom, ///< --name
    Count,
};

struct Declaration {
    Property property;
    bool isImportant = false;
    std::u16string_view customName {}; ///< with its dashes
    PropertyValue value {};
};

/// Appends what `text` declares, shorthands as the properties they stand for. What is not understood, or of
/// no use here, is left out.
void parseDeclarations(std::u16string_view text, std::vector<Declaration>& declarations);

/// The declarations that `name: value` stands for; a value with var() in it gives one that is unresolved for
/// each.
void parseDeclaration(
    std::u16string_view name, std::u16string_view value, std::vector<Declaration>& declarations);

} // namespace caddis::css
