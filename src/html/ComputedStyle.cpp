#include "html/ComputedStyle.h"

#include <algorithm>
#include <cmath>

namespace caddis::css {

namespace {

using Kind = PropertyValue::Kind;

constexpr double InitialFontSize = 12;
constexpr double SmallestFontSize = 1;
constexpr double LargestFontSize = 1000;

// In sixteenths of the initial size, from xx-small on (CSS Fonts Module Level 4, section 2.5).
constexpr std::array FontSizes { 9.6, 12.0, 14.2, 16.0, 19.2, 24.0, 32.0, 48.0 };

// Sizes near a half or a tenth of a point are meant to be that.
double snapped(double size)
{
    const double half = std::round(size * 2) / 2;
    if (std::abs(size - half) < 0.05)
        return half;
    const double tenth = std::round(size * 10) / 10;
    return std::abs(size - tenth) < 0.005 ? tenth : size;
}

// What a generic family, or a name for the reader's own, is here.
std::u16string_view actualFamily(std::u16string_view name)
{
    constexpr std::array<std::pair<std::u16string_view, std::u16string_view>, 13> Generic { {
        { u"serif", u"Times" },
        { u"ui-serif", u"Times" },
        { u"sans-serif", u"Helvetica" },
        { u"system-ui", u"Helvetica" },
        { u"ui-sans-serif", u"Helvetica" },
        { u"-apple-system", u"Helvetica" },
        { u"blinkmacsystemfont", u"Helvetica" },
        { u"monospace", u"Courier" },
        { u"ui-monospace", u"Courier" },
        { u"cursive", u"Apple Chancery" },
        { u"fantasy", u"Papyrus" },
        { u"math", u"Times" },
        { u"emoji", u"Times" },
    } };
    const auto* const found
        = std::ranges::find_if(Generic, [&](const auto& row) { return equalsIgnoringCase(name, row.first); });
    return found == Generic.end() ? name : found->second;
}

// The first of the families; nil for a list without one.
std::optional<String> familyOf(std::u16string_view list)
{
    Tokenizer tokens(list);
    Token token = tokens.nextSolid();
    if (token.is(TokenType::String))
        return String(actualFamily(unescaped(token.text)));
    std::u16string name;
    for (; token.is(TokenType::Ident) || token.is(TokenType::Number); token = tokens.nextSolid()) {
        if (!name.empty())
            name += u' ';
        name += token.is(TokenType::Ident) ? unescaped(token.text)
                                           : std::u16string(tokens.between(token.begin, token.end));
    }
    return name.empty() ? std::nullopt : std::optional(String(actualFamily(name)));
}

class Computer {
public:
    Computer(const ComputedStyle& parent, const WinningValues& values, double rootFontSize)
        : m_parent(parent)
        , m_values(values)
        , m_rootFontSize(rootFontSize)
    {
    }

    ComputedStyle compute();

private:
    const PropertyValue* value(Property property) const
    {
        return m_values[static_cast<std::size_t>(property)];
    }
    // Hands `set` the value; `initial` and `parent` are taken over for the words that ask for them.
    template <typename Field, typename Set>
    void apply(Property property, Field ComputedStyle::*field, Set set);
    void applyKeyword(Property property, Keyword ComputedStyle::*field);
    void applyPoints(Property property, double ComputedStyle::*field);
    void applyExtent(Property property, std::optional<double> ComputedStyle::*field);

    void inherit();
    void computeFont();
    void computeText();
    void computeBox();
    void computeBorder();
    void computeInlineMarks();
    std::optional<double> points(const PropertyValue& value) const;
    std::optional<double> fontSize(const PropertyValue& value) const;
    std::optional<int> fontWeight(const PropertyValue& value) const;
    std::optional<TextColor> color(const PropertyValue& value) const;

    const ComputedStyle& m_parent;
    const WinningValues& m_values;
    double m_rootFontSize;
    ComputedStyle m_style;
};

template <typename Field, typename Set>
void Computer::apply(Property property, Field ComputedStyle::*field, Set set)
{
    const PropertyValue* const said = value(property);
    if (!said)
        return;
    static const ComputedStyle initial;
    if (said->is(Keyword::Inherit))
        m_style.*field = m_parent.*field;
    else if (said->is(Keyword::Initial))
        m_style.*field = initial.*field;
    else if (!said->is(Keyword::Unset) && !said->is(Keyword::Revert) && !said->is(Keyword::RevertLayer))
        set(*said);
}

void Computer::applyKeyword(Property property, Keyword ComputedStyle::*field)
{
    apply(property, field, [&](const PropertyValue& said) {
        if (said.kind == Kind::Keyword)
            m_style.*field = said.keyword;
    });
}

void Computer::applyPoints(Property property, double ComputedStyle::*field)
{
    apply(property, field, [&](const PropertyValue& said) { m_style.*field = points(said).value_or(0); });
}

void Computer::applyExtent(Property property, std::optional<double> ComputedStyle::*field)
{
    apply(property, field, [&](const PropertyValue& said) { m_style.*field = points(said); });
}

// Percentages are of boxes, whose sizes nobody knows here.
std::optional<double> Computer::points(const PropertyValue& value) const
{
    switch (value.kind) {
    case Kind::Points:
    case Kind::Number:
        return value.number;
    case Kind::Em:
        return value.number * m_style.fontSize;
    case Kind::RootEm:
        return value.number * (m_rootFontSize > 0 ? m_rootFontSize : m_style.fontSize);
    default:
        return std::nullopt;
    }
}

std::optional<double> Computer::fontSize(const PropertyValue& value) const
{
    constexpr double Step = 1.2; // Of smaller and larger.
    const double inherited = m_parent.fontSize;
    switch (value.kind) {
    case Kind::Points:
        return value.number;
    case Kind::Em:
        return value.number * inherited;
    case Kind::Percent:
        return value.number / 100 * inherited;
    case Kind::RootEm:
        return value.number * (m_rootFontSize > 0 ? m_rootFontSize : InitialFontSize);
    case Kind::Keyword:
        if (value.keyword == Keyword::Smaller || value.keyword == Keyword::Larger)
            return value.keyword == Keyword::Larger ? inherited * Step : inherited / Step;
        if (value.keyword >= Keyword::XxSmall && value.keyword <= Keyword::XxxLarge)
            return FontSizes[static_cast<std::size_t>(value.keyword)
                       - static_cast<std::size_t>(Keyword::XxSmall)]
                / 16 * InitialFontSize;
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

std::optional<int> Computer::fontWeight(const PropertyValue& value) const
{
    constexpr int Bold = 700;
    if (value.kind == Kind::Number)
        return static_cast<int>(std::clamp(value.number, 1.0, 1000.0));
    if (value.is(Keyword::Bold))
        return Bold;
    if (value.is(Keyword::Normal))
        return 400;
    if (value.is(Keyword::Bolder))
        return m_parent.fontWeight < 350 ? 400 : m_parent.fontWeight < 550 ? Bold : 900;
    if (value.is(Keyword::Lighter))
        return m_parent.fontWeight < 550 ? 100 : m_parent.fontWeight < 750 ? 400 : Bold;
    return std::nullopt;
}

std::optional<TextColor> Computer::color(const PropertyValue& value) const
{
    if (value.is(Keyword::CurrentColor))
        return m_style.color;
    return value.kind == Kind::Color && value.color.alpha > 0 ? std::optional(value.color) : std::nullopt;
}

void Computer::inherit()
{
    m_style = m_parent;
    const ComputedStyle own;
    m_style.display = own.display;
    m_style.floating = own.floating;
    m_style.marginTop = m_style.marginBottom = m_style.marginLeft = m_style.marginRight = 0;
    m_style.width = m_style.height = std::nullopt;
    m_style.padding = m_style.borderWidth = 0;
    m_style.borderColor = std::nullopt;
}

void Computer::computeFont()
{
    apply(Property::FontSize, &ComputedStyle::fontSize, [&](const PropertyValue& said) {
        if (const auto size = fontSize(said))
            m_style.fontSize = snapped(std::clamp(*size, SmallestFontSize, LargestFontSize));
    });
    apply(Property::FontFamily, &ComputedStyle::fontFamily, [&](const PropertyValue& said) {
        if (auto family = said.kind == Kind::Text ? familyOf(said.text) : std::nullopt)
            m_style.fontFamily = std::move(*family);
    });
    apply(Property::FontWeight, &ComputedStyle::fontWeight, [&](const PropertyValue& said) {
        m_style.fontWeight = fontWeight(said).value_or(m_style.fontWeight);
    });
    apply(Property::FontStyle, &ComputedStyle::isItalic, [&](const PropertyValue& said) {
        m_style.isItalic = said.is(Keyword::Italic) || said.is(Keyword::Oblique);
    });
    apply(Property::Color, &ComputedStyle::color, [&](const PropertyValue& said) {
        if (said.kind == Kind::Color)
            m_style.color = said.color;
    });
}

void Computer::computeText()
{
    applyKeyword(Property::TextAlign, &ComputedStyle::textAlign);
    applyKeyword(Property::TextTransform, &ComputedStyle::textTransform);
    applyKeyword(Property::WhiteSpace, &ComputedStyle::whiteSpace);
    applyPoints(Property::LetterSpacing, &ComputedStyle::letterSpacing);
    applyPoints(Property::TextIndent, &ComputedStyle::textIndent);
    applyPoints(Property::BorderSpacing, &ComputedStyle::borderSpacing);
    apply(Property::Direction, &ComputedStyle::isRightToLeft,
        [&](const PropertyValue& said) { m_style.isRightToLeft = said.is(Keyword::Rtl); });
    apply(Property::Hyphens, &ComputedStyle::hyphenates,
        [&](const PropertyValue& said) { m_style.hyphenates = said.is(Keyword::Auto); });
    apply(Property::ListStyleType, &ComputedStyle::listStyle, [&](const PropertyValue& said) {
        m_style.listMarker = said.kind == Kind::Text ? said.text : std::u16string_view();
        if (said.kind == Kind::Keyword)
            m_style.listStyle = said.keyword;
    });
}

void Computer::computeBox()
{
    applyKeyword(Property::Display, &ComputedStyle::display);
    applyKeyword(Property::Float, &ComputedStyle::floating);
    applyPoints(Property::MarginTop, &ComputedStyle::marginTop);
    applyPoints(Property::MarginBottom, &ComputedStyle::marginBottom);
    applyPoints(Property::MarginLeft, &ComputedStyle::marginLeft);
    applyPoints(Property::MarginRight, &ComputedStyle::marginRight);
    applyPoints(Property::Padding, &ComputedStyle::padding);
    applyExtent(Property::Width, &ComputedStyle::width);
    applyExtent(Property::Height, &ComputedStyle::height);
}

void Computer::computeBorder()
{
    constexpr double Medium = 3;
    const PropertyValue* const style = value(Property::BorderStyle);
    if (!style || style->is(Keyword::None) || style->is(Keyword::Hidden))
        return;
    const PropertyValue* const width = value(Property::BorderWidth);
    if (width && (width->is(Keyword::Thin) || width->is(Keyword::Thick)))
        m_style.borderWidth = width->is(Keyword::Thin) ? 1 : 5;
    else
        m_style.borderWidth = width ? points(*width).value_or(Medium) : Medium;
    const PropertyValue* const said = value(Property::BorderColor);
    m_style.borderColor = said ? color(*said) : m_style.color;
    if (!m_style.borderColor)
        m_style.borderWidth = 0;
}

VerticalAlignment cellAlignmentOf(const PropertyValue& said)
{
    if (said.is(Keyword::Middle))
        return VerticalAlignment::Middle;
    return said.is(Keyword::Bottom) ? VerticalAlignment::Bottom : VerticalAlignment::Top;
}

// Lines under a paragraph show under all of its text; a background or a raised line only as far as there are
// nothing but inline elements in between.
void Computer::computeInlineMarks()
{
    if (m_parent.isBlock() || m_parent.isTablePart()) {
        m_style.background = std::nullopt;
        m_style.superscript = 0;
        m_style.baselineOffset = 0;
    }
    if (m_style.display == Keyword::InlineBlock || m_style.floating != Keyword::None)
        m_style.decoration = 0;
    if (const PropertyValue* const said = value(Property::TextDecoration)) {
        if (said->kind == Kind::Lines)
            m_style.decoration = static_cast<std::uint8_t>(m_style.decoration | said->lines);
    }
    if (const PropertyValue* const said = value(Property::BackgroundColor)) {
        if (const auto background = color(*said))
            m_style.background = background;
    }
    const PropertyValue* const said = value(Property::VerticalAlign);
    if (m_style.display == Keyword::Table || m_style.display == Keyword::InlineTable)
        m_style.cellAlignment = VerticalAlignment::Middle;
    if (said && m_style.isTablePart())
        m_style.cellAlignment = cellAlignmentOf(*said);
    if (!said || m_style.isBlock() || m_style.isTablePart())
        return;
    if (said->is(Keyword::Super) || said->is(Keyword::Sub))
        m_style.superscript += said->is(Keyword::Super) ? 1 : -1;
    else
        m_style.baselineOffset += points(*said).value_or(0);
}

ComputedStyle Computer::compute()
{
    inherit();
    computeFont();
    computeText();
    computeBox();
    computeBorder();
    computeInlineMarks();
    return std::move(m_style);
}

} // namespace

bool ComputedStyle::isBlock() const
{
    switch (display) {
    case Keyword::Block:
    case Keyword::ListItem:
    case Keyword::Table:
    case Keyword::TableRow:
    case Keyword::TableRowGroup:
    case Keyword::TableHeaderGroup:
    case Keyword::TableFooterGroup:
    case Keyword::TableCell:
    case Keyword::TableCaption:
    case Keyword::Flex:
    case Keyword::Grid:
    case Keyword::FlowRoot:
        return true;
    default:
        return floating == Keyword::Left || floating == Keyword::Right;
    }
}

ComputedStyle computedStyle(const ComputedStyle& parent, const WinningValues& values, double rootFontSize)
{
    return Computer(parent, values, rootFontSize).compute();
}

} // namespace caddis::css
