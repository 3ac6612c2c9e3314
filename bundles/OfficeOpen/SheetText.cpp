#include "bundles/OfficeOpen/SheetText.h"

#include "bundles/OfficeOpen/Relationships.h"
#include "bundles/support/SheetNumbers.h"
#include "platform/base/LeftOut.h"

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
    bool isDone() const override
    {
        const bool isFull = m_size > MaximumSize || m_strings.size() > MaximumStrings;
        if (isFull)
            noteLeftOut(u"texts of cells after the first million, or beyond 16 MiB");
        return isFull;
    }

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

// Which styles of cells show dates, by their number.
class Styles : public XmlHandler {
public:
    void startElement(std::string_view name, const XmlTag& tag) override
    {
        m_isInCells = m_isInCells || name == "cellXfs";
        const unsigned format = numberOf(tag["numFmtId"]);
        if (name == "numFmt" && m_isDateFormat.size() < MaximumStyles)
            m_isDateFormat[format] = isDateFormat(tag["formatCode"]);
        else if (name == "xf" && m_isInCells && m_isDate.size() < MaximumStyles)
            m_isDate.push_back(isDate(format));
    }
    void endElement(std::string_view name) override { m_isInCells = m_isInCells && name != "cellXfs"; }
    void characters(std::string_view) override { }

    bool isDateStyle(std::string_view number) const
    {
        const unsigned index = numberOf(number);
        return !number.empty() && index < m_isDate.size() && m_isDate[index];
    }

private:
    static constexpr std::size_t MaximumStyles = 65'536;

    static unsigned numberOf(std::string_view text)
    {
        unsigned number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        return number;
    }
    bool isDate(unsigned format) const
    {
        const auto own = m_isDateFormat.find(format);
        return own == m_isDateFormat.end() ? isDateFormat(format) : own->second;
    }

    std::map<unsigned, bool> m_isDateFormat;
    std::vector<bool> m_isDate;
    bool m_isInCells = false;
};

// The sheets in the workbook's order, and what all of them share.
struct Workbook : XmlHandler {
    struct Sheet {
        std::string name, part;
    };
    explicit Workbook(const Relationships& ofParts)
        : relationships(ofParts)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "sheet" && sheets.size() < ZipPackage::MaximumParts)
            sheets.push_back({ std::string(tag["name"]), relationships.partOf(tag) });
        else if (name == "workbookPr" && (tag["date1904"] == "1" || tag["date1904"] == "true"))
            epoch = SheetEpoch::From1904;
    }
    void endElement(std::string_view) override { }
    void characters(std::string_view) override { }

    const Relationships& relationships;
    SheetEpoch epoch = SheetEpoch::From1900;
    std::vector<Sheet> sheets;
    SharedStrings strings;
    Styles styles;
};

class SheetReader : public XmlHandler {
public:
    SheetReader(const Workbook& workbook, TextSink& text)
        : m_workbook(workbook)
        , m_text(text)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "row") {
            m_text.endLine();
        } else if (name == "c") {
            m_isShared = tag["t"] == "s";
            m_isBoolean = tag["t"] == "b";
            m_isDate = (tag["t"].empty() || tag["t"] == "n") && m_workbook.styles.isDateStyle(tag["s"]);
            m_value.clear();
        }
        m_isValue = name == "v" || name == "t" || name == "oddHeader" || name == "oddFooter";
    }
    void endElement(std::string_view name) override
    {
        m_isValue = false;
        if (name == "c" && !m_value.empty()) {
            m_text.separate();
            m_text.append(m_isShared ? m_workbook.strings.at(m_value) : std::string_view(shownValue()));
        }
    }
    void characters(std::string_view text) override
    {
        if (m_isValue && m_value.size() < Attributes::MaximumString)
            m_value.append(text);
    }
    bool isDone() const override { return m_text.isFull(); }

private:
    const std::string& shownValue()
    {
        double days = 0;
        if (m_isBoolean)
            m_value = m_value == "1" ? "TRUE" : "FALSE";
        else if (m_isDate
            && std::from_chars(m_value.data(), m_value.data() + m_value.size(), days).ec == std::errc())
            m_value = dateText(days, m_workbook.epoch);
        return m_value;
    }

    const Workbook& m_workbook;
    TextSink& m_text;
    std::string m_value;
    bool m_isShared = false;
    bool m_isBoolean = false;
    bool m_isDate = false;
    bool m_isValue = false;
};

} // namespace

void readWorkbook(ZipPackage& package, Attributes& attributes, TextSink& text)
{
    const std::string part = "xl/workbook.xml";
    const Relationships relationships = Relationships::of(package, part, attributes);
    Workbook workbook(relationships);
    package.parseXml(part, workbook, attributes);
    package.parseXml("xl/sharedStrings.xml", workbook.strings, attributes);
    package.parseXml("xl/styles.xml", workbook.styles, attributes);
    for (const Workbook::Sheet& sheet : workbook.sheets) {
        text.appendLine(sheet.name);
        SheetReader reader(workbook, text);
        package.parseXml(sheet.part, reader, attributes);
        text.endLine();
        if (text.isFull())
            break;
    }
}

} // namespace caddis::bundles
