// A workbook is a stream of records: type, length (16 bits each) and that many bytes. First the globals:
// formats, styles, sheets, strings; then each sheet between a beginning and an end of its own.

#include "bundles/OfficeLegacy/BinaryStrings.h"
#include "bundles/OfficeLegacy/Documents.h"
#include "bundles/support/CodePage.h"
#include "bundles/support/LittleEndian.h"
#include "bundles/support/SheetNumbers.h"

#include <array>
#include <map>

namespace caddis::bundles {

namespace {

enum Record : std::uint16_t {
    Formula = 0x06,
    EndOfPart = 0x0A,
    Epoch = 0x22,
    FilePass = 0x2F,
    Continue = 0x3C,
    CodePage = 0x42,
    BoundSheet = 0x85,
    MulRk = 0xBD,
    RichString = 0xD6,
    ExtendedFormat = 0xE0,
    SharedStrings = 0xFC,
    LabelSst = 0xFD,
    TextObject = 0x1B6,
    Number = 0x203,
    Label = 0x204,
    BoolErr = 0x205,
    StringResult = 0x207,
    Rk = 0x27E,
    Format = 0x41E,
    Beginning = 0x809,
};

constexpr std::size_t HeadSize = 4;
constexpr std::size_t MaximumStrings = 1'000'000;
constexpr std::size_t MaximumFormats = 65'536;
constexpr unsigned FirstUnicodeVersion = 0x600; // Excel 97

// 30 bits of a number: the upper ones of a double, or an integer; perhaps a hundredth of it.
double numberOfRk(std::uint32_t rk)
{
    const double value = rk & 2 ? double(static_cast<std::int32_t>(rk) >> 2)
                                : numberAt<double>({ std::array { '\0', '\0', '\0', '\0', char(rk & 0xFC),
                                                         char(rk >> 8), char(rk >> 16), char(rk >> 24) }
                                                           .data(),
                                                       8 },
                                    0);
    constexpr double Hundred = 100;
    return rk & 1 ? value / Hundred : value;
}

class WorkbookReader {
public:
    WorkbookReader(std::string_view stream, TextSink& text)
        : m_rest(stream)
        , m_text(text)
    {
    }

    DocumentText read()
    {
        if (u16(m_rest, 0) != Beginning)
            return DocumentText::None;
        while (m_rest.size() >= HeadSize && !m_text.isFull()) {
            const auto type = static_cast<Record>(u16(m_rest, 0));
            const std::string_view body = takeBody();
            if (type == FilePass)
                return DocumentText::Encrypted;
            if (!readGlobal(type, body))
                readCell(type, body);
        }
        m_text.endLine();
        return DocumentText::Read;
    }

private:
    std::string_view takeBody()
    {
        const std::string_view body = part(m_rest, HeadSize, u16(m_rest, 2));
        m_rest.remove_prefix(HeadSize + body.size());
        return body;
    }
    RecordReader withContinuations(std::string_view body)
    {
        std::vector<std::string_view> pieces { body };
        while (m_rest.size() >= HeadSize && u16(m_rest, 0) == Continue)
            pieces.push_back(takeBody());
        return RecordReader(std::move(pieces));
    }
    String text(std::string_view bytes) const
    {
        if (m_isUnicode)
            return RecordReader({ bytes }).unicodeString();
        return textInCodePage(part(bytes, 2, u16(bytes, 0)), m_codePage);
    }

    bool readGlobal(Record type, std::string_view body)
    {
        switch (type) {
        case Beginning:
            beginPart(body);
            return true;
        case Epoch:
            m_epoch = u16(body, 0) ? SheetEpoch::From1904 : SheetEpoch::From1900;
            return true;
        case CodePage:
            m_codePage = u16(body, 0);
            return true;
        case BoundSheet:
            addSheet(body);
            return true;
        case Format:
            addFormat(body);
            return true;
        case ExtendedFormat:
            if (m_isDateStyle.size() < MaximumFormats)
                m_isDateStyle.push_back(isDate(u16(body, 2)));
            return true;
        case SharedStrings:
            readStrings(withContinuations(body));
            return true;
        default:
            return false;
        }
    }

    // Sheets follow each other in the order of their names; charts inside sheets begin and end there too.
    void beginPart(std::string_view body)
    {
        constexpr unsigned Globals = 5, Embedded = 0x20;
        m_isUnicode = u16(body, 0) >= FirstUnicodeVersion;
        if (u16(body, 2) == Globals || u16(body, 2) == Embedded)
            return;
        m_text.endLine();
        if (m_sheet < m_sheets.size())
            m_text.appendLine(m_sheets[m_sheet++].utf8());
        m_row.reset();
    }
    void addSheet(std::string_view body)
    {
        constexpr std::size_t NamePlace = 6;
        const std::string_view name = part(body, NamePlace + 1);
        const std::size_t length
            = static_cast<std::uint8_t>(part(body, NamePlace).empty() ? 0 : body[NamePlace]);
        if (m_sheets.size() < MaximumFormats)
            m_sheets.push_back(m_isUnicode ? RecordReader({ name }).unicodeString(length)
                                           : textInCodePage(name.substr(0, length), m_codePage));
    }
    void addFormat(std::string_view body)
    {
        const String code = m_isUnicode ? RecordReader({ part(body, 2) }).unicodeString()
                                        : textInCodePage(part(body, 3), m_codePage);
        if (m_isDateFormat.size() < MaximumFormats)
            m_isDateFormat[u16(body, 0)] = isDateFormat(code.utf8());
    }
    bool isDate(unsigned format) const
    {
        const auto own = m_isDateFormat.find(format);
        return own == m_isDateFormat.end() ? isDateFormat(format) : own->second;
    }
    void readStrings(RecordReader reader)
    {
        reader.skip(4); // how often they are used
        const std::size_t count = reader.u32();
        while (m_strings.size() < std::min(count, MaximumStrings) && !reader.isAtEnd())
            m_strings.push_back(reader.unicodeString());
    }

    // A cell begins with its row, its column and its style.
    void readCell(Record type, std::string_view body)
    {
        const unsigned style = u16(body, 4);
        switch (type) {
        case LabelSst:
            if (const std::uint32_t index = u32(body, 6); index < m_strings.size())
                append(body, m_strings[index].utf8());
            break;
        case Label:
        case RichString:
            append(body, text(part(body, 6)).utf8());
            break;
        case Number:
            append(body, shown(numberAt<double>(body, 6), style));
            break;
        case Rk:
            append(body, shown(numberOfRk(u32(body, 6)), style));
            break;
        case BoolErr:
            if (u16(body, 6) < 2) // The upper byte says that it is an error.
                append(body, u16(body, 6) ? "TRUE" : "FALSE");
            break;
        case MulRk:
            appendNumbers(body);
            break;
        case Formula:
            appendResult(body, style);
            break;
        case StringResult:
            append(m_formula, text(body).utf8());
            break;
        case TextObject:
            appendObject(body);
            break;
        default:
            break;
        }
    }

    void append(std::string_view cell, const std::string& value)
    {
        if (m_row != u16(cell, 0))
            m_text.endLine();
        m_row = u16(cell, 0);
        m_text.separate();
        m_text.append(value);
    }
    std::string shown(double number, unsigned style) const
    {
        return style < m_isDateStyle.size() && m_isDateStyle[style] ? dateText(number, m_epoch)
                                                                    : numberText(number);
    }
    void appendNumbers(std::string_view body)
    {
        constexpr std::size_t First = 4, Size = 6; // each a style and a number
        for (std::size_t at = First; at + Size + 2 <= body.size(); at += Size)
            append(body, shown(numberOfRk(u32(body, at + 2)), u16(body, at)));
    }
    // What is no number has two bytes of ones at its end; a text follows in a record of its own.
    void appendResult(std::string_view body, unsigned style)
    {
        m_formula = body;
        if (u16(body, 12) != 0xFFFF)
            append(body, shown(numberAt<double>(body, 6), style));
    }
    void appendObject(std::string_view body)
    {
        const std::size_t length = u16(body, 10);
        if (length == 0 || u16(m_rest, 0) != Continue)
            return;
        m_text.appendLine(withContinuations({}).unicodeString(length).utf8());
        m_row.reset();
    }

    std::string_view m_rest;
    TextSink& m_text;
    std::vector<String> m_sheets;
    std::vector<String> m_strings;
    std::map<unsigned, bool> m_isDateFormat;
    std::vector<bool> m_isDateStyle;
    std::string_view m_formula; ///< the last cell with one
    std::optional<unsigned> m_row;
    std::size_t m_sheet = 0;
    unsigned m_codePage = 1252;
    SheetEpoch m_epoch = SheetEpoch::From1900;
    bool m_isUnicode = true;
};

} // namespace

DocumentText readBinaryWorkbook(const CompoundFile& file, TextSink& text)
{
    auto stream = file.stream("Workbook");
    if (!stream)
        stream = file.stream("Book");
    return stream ? WorkbookReader(*stream, text).read() : DocumentText::None;
}

} // namespace caddis::bundles
