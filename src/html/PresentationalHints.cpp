#include "html/Cascade.h"

#include "text/NumericValues.h"

#include <algorithm>

namespace caddis::css {

namespace {

using html::Tag;

class Hints {
public:
    Hints(const Page& page, NodeIndex element, std::vector<Declaration>& declarations)
        : m_page(page)
        , m_element(element)
        , m_declarations(declarations)
    {
    }

    void append();

private:
    std::optional<std::u16string_view> attribute(std::u16string_view name) const
    {
        return m_page.attribute(m_element, name);
    }
    void add(Property property, const PropertyValue& value)
    {
        m_declarations.push_back({ .property = property, .value = value });
    }
    void color(std::u16string_view name, Property property);
    void length(std::u16string_view name, Property property);
    void align();
    void font();
    void listStyle();
    void tableParts();
    void inheritFromTable(Tag tag);

    const Page& m_page;
    NodeIndex m_element;
    std::vector<Declaration>& m_declarations;
};

void Hints::color(std::u16string_view name, Property property)
{
    const auto value = attribute(name);
    if (const auto color = value ? legacyColorOf(*value) : std::nullopt)
        add(property, PropertyValue::colored(*color));
}

void Hints::length(std::u16string_view name, Property property)
{
    const auto value = attribute(name);
    if (!value || trimmed(*value).ends_with(u'%'))
        return;
    if (const double number = doubleValue(*value); number > 0 && number < 1e5)
        add(property, PropertyValue::points(number));
}

void Hints::align()
{
    const auto value = attribute(u"align");
    const auto keyword = value ? keywordNamed(trimmed(*value)) : std::nullopt;
    const Tag tag = m_page[m_element].tag;
    if (!keyword || tag == Tag::Table || tag == Tag::Iframe)
        return;
    if (tag != Tag::Img && *keyword >= Keyword::Left && *keyword <= Keyword::Justify)
        add(Property::TextAlign, PropertyValue::of(*keyword));
}

// Sizes 1 to 7, or steps up and down from 3.
void Hints::font()
{
    color(u"color", Property::Color);
    if (const auto face = attribute(u"face"); face && !trimmed(*face).empty())
        add(Property::FontFamily, { .kind = PropertyValue::Kind::Text, .text = *face });
    const std::u16string_view size = m_page.trimmedAttribute(m_element, u"size");
    if (size.empty())
        return;
    const bool isRelative = size[0] == u'+' || size[0] == u'-';
    const int number = std::clamp(intValue(size) + (isRelative ? 3 : 0), 1, 7);
    constexpr Keyword sizes[] = { Keyword::XSmall, Keyword::Small, Keyword::Medium, Keyword::Large,
        Keyword::XLarge, Keyword::XxLarge, Keyword::XxxLarge };
    add(Property::FontSize, PropertyValue::of(sizes[number - 1]));
}

void Hints::listStyle()
{
    const auto type = attribute(u"type");
    if (!type)
        return;
    const std::u16string_view name = trimmed(*type);
    constexpr std::pair<char16_t, Keyword> letters[]
        = { { u'1', Keyword::Decimal }, { u'a', Keyword::LowerAlpha }, { u'A', Keyword::UpperAlpha },
              { u'i', Keyword::LowerRoman }, { u'I', Keyword::UpperRoman } };
    for (const auto& [letter, keyword] : letters) {
        if (name.size() == 1 && name[0] == letter)
            add(Property::ListStyleType, PropertyValue::of(keyword));
    }
    const auto keyword = keywordNamed(name);
    if (keyword && *keyword >= Keyword::Disc && *keyword <= Keyword::Square)
        add(Property::ListStyleType, PropertyValue::of(*keyword));
}

// A cell looks at its table's padding and border; tables nest deeply only on pages that mean no good.
void Hints::inheritFromTable(Tag tag)
{
    constexpr int FarthestTable = 4;
    if (tag != Tag::Td && tag != Tag::Th)
        return;
    NodeIndex table = m_page[m_element].parent;
    for (int steps = 0; steps < FarthestTable && table != NoNode && m_page[table].tag != Tag::Table; ++steps)
        table = m_page[table].parent;
    if (table == NoNode || m_page[table].tag != Tag::Table)
        return;
    if (const auto padding = m_page.attribute(table, u"cellpadding"))
        add(Property::Padding, PropertyValue::points(std::clamp(intValue(*padding), 0, 1000)));
    const auto border = m_page.attribute(table, u"border");
    if (!border || trimmed(*border) == u"0")
        return;
    add(Property::BorderStyle, PropertyValue::of(Keyword::Inset));
    add(Property::BorderWidth, PropertyValue::points(1));
    add(Property::BorderColor, PropertyValue::colored(TextColor::fromBytes(128, 128, 128)));
}

void Hints::tableParts()
{
    color(u"bgcolor", Property::BackgroundColor);
    inheritFromTable(m_page[m_element].tag);
    if (attribute(u"nowrap"))
        add(Property::WhiteSpace, PropertyValue::of(Keyword::Nowrap));
    length(u"cellspacing", Property::BorderSpacing);
    const auto vertical = attribute(u"valign");
    if (const auto keyword = vertical ? keywordNamed(trimmed(*vertical)) : std::nullopt)
        add(Property::VerticalAlign, PropertyValue::of(*keyword));
}

void Hints::append()
{
    const Tag tag = m_page[m_element].tag;
    if (m_page[m_element].attributeCount == 0)
        return inheritFromTable(tag);
    if (const auto direction = attribute(u"dir"))
        add(Property::Direction,
            PropertyValue::of(equalsIgnoringCase(trimmed(*direction), u"rtl") ? Keyword::Rtl : Keyword::Ltr));
    align();
    length(u"width", Property::Width);
    length(u"height", Property::Height);
    switch (tag) {
    case Tag::Font:
        return font();
    case Tag::Body:
        color(u"text", Property::Color);
        return color(u"bgcolor", Property::BackgroundColor);
    case Tag::Ul:
    case Tag::Ol:
    case Tag::Li:
        return listStyle();
    case Tag::Table:
    case Tag::Tbody:
    case Tag::Thead:
    case Tag::Tfoot:
    case Tag::Tr:
    case Tag::Td:
    case Tag::Th:
        return tableParts();
    default:
        return;
    }
}

} // namespace

void appendHints(const Page& page, NodeIndex element, std::vector<Declaration>& declarations)
{
    Hints(page, element, declarations).append();
}

} // namespace caddis::css
