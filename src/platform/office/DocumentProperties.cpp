#include "platform/office/DocumentProperties.h"

#include "platform/office/Values.h"
#include "platform/richtext/AttributedString.h"

#include <algorithm>
#include <array>

namespace caddis::office {

namespace {

using namespace DocumentAttribute;

struct Row {
    std::string_view element;
    std::u16string_view key;
};

// Core and extended properties (ECMA-376 part 2, 11 and part 1, 22.2), and those of Word 2003's XML.
constexpr std::array<Row, 21> OfficeOpenRows { { { "dc:title", Title }, { "dc:subject", Subject },
    { "dc:creator", Author }, { "cp:keywords", Keywords }, { "dc:description", Comment },
    { "cp:lastModifiedBy", Editor }, { "cp:category", Category }, { "dcterms:created", CreationTime },
    { "dcterms:modified", ModificationTime }, { "Company", Company }, { "Manager", Manager },
    { "o:Title", Title }, { "o:Subject", Subject }, { "o:Author", Author }, { "o:Keywords", Keywords },
    { "o:Description", Comment }, { "o:LastAuthor", Editor }, { "o:Category", Category },
    { "o:Company", Company }, { "o:Created", CreationTime }, { "o:LastSaved", ModificationTime } } };

// OpenDocument 1.2 part 1, 4.3.
constexpr std::array<Row, 8> OpenDocumentRows { { { "dc:title", Title }, { "dc:subject", Subject },
    { "meta:initial-creator", Author }, { "meta:keyword", Keywords }, { "dc:description", Comment },
    { "dc:creator", Editor }, { "meta:creation-date", CreationTime }, { "dc:date", ModificationTime } } };

template <std::size_t Count>
std::u16string_view find(const std::array<Row, Count>& rows, std::string_view element)
{
    const auto row = std::ranges::find(rows, element, &Row::element);
    return row == rows.end() ? std::u16string_view() : row->key;
}

} // namespace

std::u16string_view DocumentProperties::keyOf(std::string_view element) const
{
    return m_kind == Kind::OfficeOpen ? find(OfficeOpenRows, element) : find(OpenDocumentRows, element);
}

bool DocumentProperties::start(std::string_view element)
{
    m_key = keyOf(element);
    m_text = {};
    return !m_key.empty();
}

void DocumentProperties::characters(const String& text)
{
    if (!m_key.empty())
        m_text = text;
}

void DocumentProperties::end(std::string_view element)
{
    if (!m_key.empty() && keyOf(element) == m_key)
        set(m_key, m_text);
    m_key = {};
}

// OpenDocument has one element for each keyword.
void DocumentProperties::set(std::u16string_view key, const String& text)
{
    constexpr std::size_t MostKeywords = 1000;
    if (text.isEmpty())
        return;
    if (key == CreationTime || key == ModificationTime) {
        if (const auto seconds = unixSecondsOfTime(text.utf8()))
            m_attributes.set(String(key), Value(Date::fromUnixSeconds(*seconds)));
    } else if (key != Keywords) {
        m_attributes.set(String(key), Value(text));
    } else if (m_keywords.size() < MostKeywords) {
        const Array found = m_kind == Kind::OpenDocument ? Array { Value(text) } : keywordsOf(text);
        m_keywords.insert(m_keywords.end(), found.begin(), found.end());
        m_attributes.set(String(key), Value(m_keywords));
    }
}

void DocumentProperties::read(const Data& part)
{
    struct Delegate : XMLParserDelegate {
        explicit Delegate(DocumentProperties& all)
            : properties(all)
        {
        }
        void didStartElement(std::string_view name, const XMLAttributes&) override { properties.start(name); }
        void didEndElement(std::string_view name) override { properties.end(name); }
        void foundCharacters(const String& text) override { properties.characters(text); }

        DocumentProperties& properties;
    };
    Delegate delegate(*this);
    XMLParser::parse(part, delegate);
}

} // namespace caddis::office
