// Styles, lists and pages of a document in Word's markup.

#include "platform/office/Values.h"
#include "platform/office/WordReader.h"

#include <algorithm>
#include <cmath>

namespace caddis::office {

namespace {

constexpr double TwipsPerPoint = 20;

struct Format {
    std::string_view name; // ECMA-376 part 1, 17.18.59.
    std::int32_t number; // The same in Word 2003's XML.
    std::u16string_view style;
};

constexpr std::array<Format, 8> Formats { { { "decimal", 0, u"decimal" }, { "upperRoman", 1, u"upper-roman" },
    { "lowerRoman", 2, u"lower-roman" }, { "upperLetter", 3, u"upper-alpha" },
    { "lowerLetter", 4, u"lower-alpha" }, { "decimalZero", 22, u"decimal-leading-zero" },
    { "bullet", 23, ListLevel::Bullet }, { "none", 255, u"none" } } };

template <typename Row> String formatOf(Row row)
{
    return String(row == Formats.end() ? u"decimal" : row->style);
}

double twips(const XMLAttributes& attributes, std::string_view name)
{
    return numberAtFront(attributes.utf8(name).value_or("")) / TwipsPerPoint;
}

} // namespace

void WordReader::startStyle(const XMLAttributes& attributes)
{
    const auto name = attributes.value("w:styleId");
    if (!name)
        return;
    m_style = &m_styles.define(*name);
    const auto isDefault = attributes.utf8("w:default");
    if (attributes.utf8("w:type") == "paragraph" && isDefault && isOn(*isDefault))
        m_styles.paragraphStyle = *name;
}

void WordReader::endStyle() { m_style = nullptr; }

void WordReader::basedOn(const XMLAttributes& attributes)
{
    if (m_style)
        m_style->parent = attributes.value("w:val").value_or(String());
}

void WordReader::startDefaults(const XMLAttributes&) { m_style = &m_styles.defaults; }

void WordReader::endDefaults() { m_style = nullptr; }

// Redefined lists are gone, and what was open in them.
void WordReader::openList(ListLevels* list)
{
    m_list = list;
    m_level = nullptr;
    m_paragraph = nullptr;
}

// A list's own id and the id of what uses it are counted apart.
void WordReader::startList(const XMLAttributes& attributes)
{
    auto identifier = attributes.value("w:abstractNumId");
    if (!identifier)
        identifier = attributes.value("w:listDefId");
    if (identifier)
        openList(&m_numbering.define(String(u"definition " + std::u16string(identifier->view()))));
}

void WordReader::startListLevel(const XMLAttributes& attributes)
{
    const int index = std::clamp(integerAtFront(attributes.utf8("w:ilvl").value_or("")), 0, LastListLevel);
    m_level = m_list ? &(*m_list)[static_cast<std::size_t>(index)] : nullptr;
}

void WordReader::endListLevel() { m_level = nullptr; }

void WordReader::levelStart(const XMLAttributes& attributes)
{
    if (m_level)
        m_level->start = integerAtFront(attributes.utf8("w:val").value_or(""));
}

void WordReader::levelFormat(const XMLAttributes& attributes)
{
    if (m_level)
        m_level->format
            = formatOf(std::ranges::find(Formats, attributes.utf8("w:val").value_or(""), &Format::name));
}

void WordReader::levelNumber(const XMLAttributes& attributes)
{
    if (m_level)
        m_level->format = formatOf(std::ranges::find(
            Formats, integerAtFront(attributes.utf8("w:val").value_or("")), &Format::number));
}

void WordReader::levelText(const XMLAttributes& attributes)
{
    if (!m_level)
        return;
    m_level->pattern = attributes.value("w:val").value_or(String());
    if (m_level->format == ListLevel::Bullet)
        m_level->pattern = bulletOfSymbol(m_level->pattern);
}

void WordReader::startNumber(const XMLAttributes& attributes)
{
    auto identifier = attributes.value("w:numId");
    if (!identifier)
        identifier = attributes.value("w:ilfo");
    m_number = identifier.value_or(String());
    m_isInNumber = true;
}

void WordReader::endNumber()
{
    m_isInNumber = false;
    openList(nullptr);
}

void WordReader::numberOf(const XMLAttributes& attributes)
{
    const auto definition = attributes.value("w:val");
    if (!m_isInNumber || !definition)
        return;
    openList(nullptr);
    m_numbering.alias(m_number, String(u"definition " + std::u16string(definition->view())));
}

// Levels that are overridden make a list that counts on its own.
void WordReader::startLevelOverride(const XMLAttributes& attributes)
{
    if (!m_isInNumber || !m_numbering.has(m_number))
        return;
    openList(&m_numbering.separate(m_number));
    startListLevel(attributes);
}

// The fonts of headings and of text, which styles name by their role (ECMA-376 part 1, 20.1.4.1.16).
void WordReader::setThemeFonts(const Data& theme)
{
    struct Delegate : XMLParserDelegate {
        void didStartElement(std::string_view name, const XMLAttributes& attributes) override
        {
            if (name == "a:majorFont" || name == "a:minorFont")
                role = name.substr(2, 5);
            else if (name == "a:latin" && !role.empty())
                fonts[std::exchange(role, {})] = attributes.value("typeface").value_or(String());
        }
        void didEndElement(std::string_view) override { }
        void foundCharacters(const String&) override { }

        std::map<std::string, String, std::less<>> fonts;
        std::string role;
    };
    Delegate delegate;
    XMLParser::parse(theme, delegate);
    m_themeFonts = std::move(delegate.fonts);
}

void WordReader::pageSize(const XMLAttributes& attributes)
{
    const Size size { twips(attributes, "w:w"), twips(attributes, "w:h") };
    if (size.width > 0 && size.height > 0)
        m_page.set(String(DocumentAttribute::PaperSize), Value(stringFromSize(size)));
}

void WordReader::pageMargins(const XMLAttributes& attributes)
{
    static constexpr std::pair<std::string_view, std::u16string_view> Sides[] {
        { "w:left", DocumentAttribute::LeftMargin }, { "w:right", DocumentAttribute::RightMargin },
        { "w:top", DocumentAttribute::TopMargin }, { "w:bottom", DocumentAttribute::BottomMargin }
    };
    for (const auto& [name, key] : Sides) {
        if (attributes.utf8(name))
            m_page.set(String(key), Value(std::abs(twips(attributes, name))));
    }
}

} // namespace caddis::office
