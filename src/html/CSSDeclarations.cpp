#include "html/CSSDeclarations.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace caddis::css {

namespace {

using Kind = PropertyValue::Kind;
using Declarations = std::vector<Declaration>;

// What a name in a style sheet stands for: a property, or several.
enum class Name : std::uint8_t {
    Single, // a property of its own
    Background,
    Border,
    Font,
    ListStyle,
    Margin,
    Padding,
};

struct NameRow {
    std::u16string_view text;
    Property property;
    Name name = Name::Single;
};

constexpr std::array NameRows {
    NameRow { u"background", Property::BackgroundColor, Name::Background },
    NameRow { u"background-color", Property::BackgroundColor },
    NameRow { u"border", Property::BorderWidth, Name::Border },
    NameRow { u"border-color", Property::BorderColor },
    NameRow { u"border-spacing", Property::BorderSpacing },
    NameRow { u"border-style", Property::BorderStyle },
    NameRow { u"border-width", Property::BorderWidth },
    NameRow { u"color", Property::Color },
    NameRow { u"direction", Property::Direction },
    NameRow { u"display", Property::Display },
    NameRow { u"float", Property::Float },
    NameRow { u"font", Property::FontSize, Name::Font },
    NameRow { u"font-family", Property::FontFamily },
    NameRow { u"font-size", Property::FontSize },
    NameRow { u"font-style", Property::FontStyle },
    NameRow { u"font-weight", Property::FontWeight },
    NameRow { u"height", Property::Height },
    NameRow { u"hyphens", Property::Hyphens },
    NameRow { u"letter-spacing", Property::LetterSpacing },
    NameRow { u"list-style", Property::ListStyleType, Name::ListStyle },
    NameRow { u"list-style-type", Property::ListStyleType },
    NameRow { u"margin", Property::MarginTop, Name::Margin },
    NameRow { u"margin-bottom", Property::MarginBottom },
    NameRow { u"margin-left", Property::MarginLeft },
    NameRow { u"margin-inline-start", Property::MarginLeft },
    NameRow { u"margin-right", Property::MarginRight },
    NameRow { u"margin-inline-end", Property::MarginRight },
    NameRow { u"margin-top", Property::MarginTop },
    NameRow { u"padding", Property::Padding, Name::Padding },
    NameRow { u"text-align", Property::TextAlign },
    NameRow { u"text-decoration", Property::TextDecoration },
    NameRow { u"text-decoration-line", Property::TextDecoration },
    NameRow { u"text-indent", Property::TextIndent },
    NameRow { u"text-transform", Property::TextTransform },
    NameRow { u"vertical-align", Property::VerticalAlign },
    NameRow { u"white-space", Property::WhiteSpace },
    NameRow { u"width", Property::Width },
};

const NameRow* rowNamed(std::u16string_view name)
{
    static const auto rows = [] {
        std::unordered_map<std::u16string_view, const NameRow*> table;
        for (const NameRow& row : NameRows)
            table.emplace(row.text, &row);
        return table;
    }();
    const auto found = rows.find(name);
    return found == rows.end() ? nullptr : found->second;
}

bool isColor(Property property)
{
    return property == Property::Color || property == Property::BackgroundColor
        || property == Property::BorderColor;
}

void add(Declarations& declarations, Property property, const PropertyValue& value)
{
    declarations.push_back({ .property = property, .value = value });
}

std::optional<PropertyValue> keywordValue(const Token& token)
{
    const auto keyword = token.is(TokenType::Ident) ? keywordNamed(token.text) : std::nullopt;
    return keyword ? std::optional(PropertyValue::of(*keyword)) : std::nullopt;
}

bool isForAll(const PropertyValue& value)
{
    return value.kind == Kind::Keyword && value.keyword >= Keyword::Inherit
        && value.keyword <= Keyword::RevertLayer;
}

// The families as they are written, but for what says that the text is no list of families.
std::optional<PropertyValue> familyValue(std::u16string_view text)
{
    const auto keyword = keywordNamed(text);
    if (keyword && isForAll(PropertyValue::of(*keyword)))
        return PropertyValue::of(*keyword);
    return text.empty() ? std::nullopt : std::optional(PropertyValue { .kind = Kind::Text, .text = text });
}

PropertyValue decorationOf(std::u16string_view text)
{
    Tokenizer tokens(text);
    unsigned lines = 0;
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        const auto value = keywordValue(token);
        if (value && isForAll(*value))
            return *value;
        if (token.isIdent(u"underline"))
            lines |= PropertyValue::UnderlineLine;
        else if (token.isIdent(u"line-through"))
            lines |= PropertyValue::ThroughLine;
    }
    return PropertyValue::decorated(lines);
}

// The value of a property that has one: the first token, whatever follows.
std::optional<PropertyValue> singleValue(Property property, std::u16string_view text)
{
    if (property == Property::FontFamily)
        return familyValue(text);
    if (property == Property::TextDecoration)
        return decorationOf(text);
    Tokenizer tokens(text);
    const Token token = tokens.nextSolid();
    if (const auto value = keywordValue(token); value && (isForAll(*value) || !isColor(property)))
        return value;
    if (isColor(property))
        return colorFrom(token, tokens);
    if (property == Property::ListStyleType && token.is(TokenType::String))
        return PropertyValue { .kind = Kind::Text, .text = token.text };
    return numberOf(token);
}

void addBackground(std::u16string_view text, Declarations& declarations)
{
    Tokenizer tokens(text);
    auto found = PropertyValue::of(Keyword::Transparent);
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        if (const auto value = colorFrom(token, tokens))
            found = *value;
        else if (const auto keyword = keywordValue(token); keyword && isForAll(*keyword))
            found = *keyword;
    }
    add(declarations, Property::BackgroundColor, found);
}

bool isLineStyle(Keyword keyword)
{
    return keyword == Keyword::None || (keyword >= Keyword::Hidden && keyword <= Keyword::Outset);
}

void addBorder(std::u16string_view text, Declarations& declarations)
{
    Tokenizer tokens(text);
    PropertyValue style = PropertyValue::of(Keyword::None);
    PropertyValue width = PropertyValue::of(Keyword::Medium);
    PropertyValue color = PropertyValue::of(Keyword::CurrentColor);
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        const auto keyword = keywordValue(token);
        if (keyword && isLineStyle(keyword->keyword))
            style = *keyword;
        else if (keyword && (keyword->is(Keyword::Thin) || keyword->is(Keyword::Thick)))
            width = *keyword;
        else if (const auto number = numberOf(token))
            width = *number;
        else if (const auto value = colorFrom(token, tokens))
            color = *value;
    }
    add(declarations, Property::BorderStyle, style);
    add(declarations, Property::BorderWidth, width);
    add(declarations, Property::BorderColor, color);
}

bool isFontSize(Keyword keyword) { return keyword >= Keyword::XxSmall && keyword <= Keyword::Larger; }

// [style weight …] size[/line-height] family
void addFont(std::u16string_view text, Declarations& declarations)
{
    Tokenizer tokens(text);
    PropertyValue style = PropertyValue::of(Keyword::Normal);
    PropertyValue weight = PropertyValue::of(Keyword::Normal);
    std::optional<PropertyValue> size;
    Token token = tokens.nextSolid();
    for (; !token.is(TokenType::End) && !size; token = tokens.nextSolid()) {
        const auto keyword = keywordValue(token);
        const auto number = numberOf(token);
        if (keyword && (keyword->is(Keyword::Italic) || keyword->is(Keyword::Oblique)))
            style = *keyword;
        else if (keyword && keyword->keyword >= Keyword::Bold && keyword->keyword <= Keyword::Lighter)
            weight = *keyword;
        else if (number && number->kind == Kind::Number)
            weight = *number;
        else if (number || (keyword && isFontSize(keyword->keyword)))
            size = number ? number : keyword;
        else if (keyword && isForAll(*keyword))
            return add(declarations, Property::FontSize, *keyword);
    }
    if (token.isDelimiter(u'/')) {
        tokens.nextSolid();
        token = tokens.nextSolid();
    }
    const auto family = familyValue(trimmed(text.substr(std::min(token.begin, text.size()))));
    if (!size || !family)
        return;
    add(declarations, Property::FontStyle, style);
    add(declarations, Property::FontWeight, weight);
    add(declarations, Property::FontSize, *size);
    add(declarations, Property::FontFamily, *family);
}

void addListStyle(std::u16string_view text, Declarations& declarations)
{
    Tokenizer tokens(text);
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        if (token.is(TokenType::String))
            return add(declarations, Property::ListStyleType, { .kind = Kind::Text, .text = token.text });
        const auto value = keywordValue(token);
        if (value && !value->is(Keyword::Inset) && !token.isIdent(u"inside") && !token.isIdent(u"outside"))
            return add(declarations, Property::ListStyleType, *value);
    }
}

// One value to four: top, right, bottom, left.
void addMargin(std::u16string_view text, Declarations& declarations)
{
    Tokenizer tokens(text);
    std::array<PropertyValue, 4> values {};
    std::size_t count = 0;
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        const auto number = numberOf(token);
        const auto value = number ? number : keywordValue(token);
        if (!value || count == values.size())
            return;
        values[count++] = *value;
    }
    if (count == 0)
        return;
    const PropertyValue right = values[count > 1 ? 1 : 0];
    add(declarations, Property::MarginTop, values[0]);
    add(declarations, Property::MarginRight, right);
    add(declarations, Property::MarginBottom, values[count > 2 ? 2 : 0]);
    add(declarations, Property::MarginLeft, count > 3 ? values[3] : right);
}

bool holdsVariable(std::u16string_view value) { return value.find(u"var(") != value.npos; }

// The properties that a shorthand sets, each with the whole text until its variables are known.
void addUnresolved(const NameRow& row, std::u16string_view text, Declarations& declarations)
{
    add(declarations, row.property, { .kind = Kind::Unresolved, .text = text });
    declarations.back().customName = row.text;
}

void addNamed(const NameRow& row, std::u16string_view text, Declarations& declarations)
{
    switch (row.name) {
    case Name::Background:
        return addBackground(text, declarations);
    case Name::Border:
        return addBorder(text, declarations);
    case Name::Font:
        return addFont(text, declarations);
    case Name::ListStyle:
        return addListStyle(text, declarations);
    case Name::Margin:
        return addMargin(text, declarations);
    case Name::Padding:
    case Name::Single:
        if (const auto value = singleValue(row.property, text))
            add(declarations, row.property, *value);
    }
}

// Cuts "!important" off the end.
bool cutImportant(std::u16string_view& value)
{
    constexpr std::u16string_view Word = u"important";
    if (value.size() <= Word.size() || !equalsIgnoringCase(value.substr(value.size() - Word.size()), Word))
        return false;
    const std::u16string_view before = trimmed(value.substr(0, value.size() - Word.size()));
    if (!before.ends_with(u'!'))
        return false;
    value = trimmed(before.substr(0, before.size() - 1));
    return true;
}

} // namespace

void parseDeclaration(
    std::u16string_view name, std::u16string_view value, std::vector<Declaration>& declarations)
{
    const std::size_t first = declarations.size();
    const bool isImportant = cutImportant(value);
    if (name.starts_with(u"--")) {
        declarations.push_back({ .property = Property::Custom,
            .customName = name,
            .value = { .kind = Kind::Unresolved, .text = value } });
    } else if (const NameRow* const row = rowNamed(name)) {
        if (holdsVariable(value))
            addUnresolved(*row, value, declarations);
        else
            addNamed(*row, value, declarations);
    }
    for (std::size_t index = first; index < declarations.size(); ++index)
        declarations[index].isImportant = isImportant;
}

void parseDeclarations(std::u16string_view text, std::vector<Declaration>& declarations)
{
    Tokenizer tokens(text);
    for (Token token = tokens.nextSolid(); !token.is(TokenType::End); token = tokens.nextSolid()) {
        const Token name = token;
        if (name.is(TokenType::Ident))
            token = tokens.nextSolid();
        const bool isDeclaration = name.is(TokenType::Ident) && token.is(TokenType::Colon);
        const std::size_t begin = token.end;
        // Up to the semicolon; a block in between, as of a nested rule, ends the statement as well.
        while (!token.is(TokenType::Semicolon) && !token.is(TokenType::End)) {
            if (opensBlock(token.type)) {
                tokens.skipBlock(token.type);
                if (token.is(TokenType::OpenBrace) && !isDeclaration)
                    break;
            }
            token = tokens.next();
        }
        if (!isDeclaration)
            continue;
        const std::u16string_view value = trimmed(tokens.between(begin, token.begin));
        const bool isLower
            = std::ranges::none_of(name.text, [](char16_t unit) { return unit >= u'A' && unit <= u'Z'; });
        if (isLower || name.text.starts_with(u"--"))
            parseDeclaration(name.text, value, declarations);
        else
            parseDeclaration(lowered(name.text), value, declarations);
    }
}

} // namespace caddis::css
