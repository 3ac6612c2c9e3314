#include "bundles/OfficeOpen/SheetText.h"

#include <charconv>
#include <deque>
#include <map>

namespace caddis::bundles {

namespace {

// Texts that cells refer to by number. As many as a text content can hold anyway.
class SharedStrings : public XmlHandler {
public:
    void startElement(std::string_view name, const XmlTag&) override
    {
        if (name == "si")
            m_strings.emplace_back();
        m_isText = name == "t";
        m_isPhonetic = m_isPhonetic || name == "rPh";
    }
    void endElement(std::string_view name) override
    {
        m_isText = false;
        m_isPhonetic = m_isPhonetic && name != "rPh";
    }
    void characters(std::string_view text) override
    {
        if (m_isText && !m_isPhonetic && !m_strings.empty()) {
            m_strings.back().append(text);
            m_size += text.size();
        }
    }
    bool isDone() const override { return m_size > MaximumSize || m_strings.size() > MaximumStrings; }

    std::string_view at(std::string_view number) const
    {
        std::size_t index = 0;
        std::from_chars(number.data(), number.data() + number.size(), index);
        return index < m_strings.size() ? std::string_view(m_strings[index]) : std::string_view();
    }

private:
    static constexpr std::size_t MaximumSize = 16 * 1024 * 1024;
    static constexpr std::size_t MaximumStrings = 1'000'000;

    std::deque<std::string> m_strings;
    std::size_t m_size = 0;
    bool m_isText = false;
    bool m_isPhonetic = false;
};

class SheetReader : public XmlHandler {
public:
    SheetReader(const SharedStrings& strings, TextSink& text)
        : m_strings(strings)
        , m_text(text)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "row") {
            m_text.endLine();
        } else if (name == "c") {
            m_isShared = tag["t"] == "s";
            m_value.clear();
        }
        m_isValue = name == "v" || name == "t" || name == "oddHeader" || name == "oddFooter";
    }
    void endElement(std::string_view name) override
    {
        m_isValue = false;
        if (name == "c" && !m_value.empty()) {
            m_text.separate();
            m_text.append(m_isShared ? m_strings.at(m_value) : std::string_view(m_value));
        }
    }
    void characters(std::string_view text) override
    {
        if (m_isValue && m_value.size() < Attributes::MaximumString)
            m_value.append(text);
    }
    bool isDone() const override { return m_text.isFull(); }

private:
    const SharedStrings& m_strings;
    TextSink& m_text;
    std::string m_value;
    bool m_isShared = false;
    bool m_isValue = false;
};

// The sheets in the workbook's order: names and the identifiers of their parts.
struct Workbook : XmlHandler {
    struct Sheet {
        std::string name, identifier;
    };
    std::vector<Sheet> sheets;

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "sheet")
            sheets.push_back({ std::string(tag["name"]), std::string(tag["id"]) });
    }
    void endElement(std::string_view) override { }
    void characters(std::string_view) override { }
};

struct Relationships : XmlHandler {
    std::map<std::string, std::string, std::less<>> targets;

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "Relationship")
            targets.emplace(tag["Id"], tag["Target"]);
    }
    void endElement(std::string_view) override { }
    void characters(std::string_view) override { }
};

} // namespace

void readWorkbook(ZipPackage& package, Attributes& attributes, TextSink& text)
{
    SharedStrings strings;
    Workbook workbook;
    Relationships relationships;
    package.parseXml("xl/sharedStrings.xml", strings, attributes);
    package.parseXml("xl/workbook.xml", workbook, attributes);
    package.parseXml("xl/_rels/workbook.xml.rels", relationships, attributes);
    for (const Workbook::Sheet& sheet : workbook.sheets) {
        const std::string& target = relationships.targets[sheet.identifier];
        text.appendLine(sheet.name);
        SheetReader reader(strings, text);
        package.parseXml(target.starts_with('/') ? target.substr(1) : "xl/" + target, reader, attributes);
        text.endLine();
        if (text.isFull())
            break;
    }
}

} // namespace caddis::bundles
