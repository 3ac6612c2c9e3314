#include "platform/office/WordReader.h"

#include "platform/base/Base64.h"
#include "platform/unicode/TextEncoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace caddis::office {

namespace {

std::u16string_view withoutBlanks(std::u16string_view text)
{
    constexpr std::u16string_view Blanks = u" \t\r\n";
    const std::size_t begin = text.find_first_not_of(Blanks);
    return begin == text.npos ? std::u16string_view()
                              : text.substr(begin, text.find_last_not_of(Blanks) + 1 - begin);
}

} // namespace

WordReader::WordReader(const Parts* parts)
    : ElementReader(DocumentProperties::Kind::OfficeOpen)
    , m_parts(parts)
{
}

// NOLINTNEXTLINE(readability-function-size): a table
const WordReader::Elements& WordReader::elements()
{
    using R = WordReader;
    static const Elements table {
        // Text
        { "w:body", { &R::startBody, &R::endBody } },
        { "w:p", { &R::startParagraph, &R::endParagraph } },
        { "w:r", { &R::startRun, &R::endRun } },
        { "m:r", { &R::startRun, &R::endRun } },
        { "w:t", { &R::startText, &R::endText } },
        { "m:t", { &R::startText, &R::endText } },
        { "w:instrText", { &R::startInstruction, &R::endText } },
        { "w:tab", { &R::tab } },
        { "w:ptab", { &R::tab } },
        { "w:br", { &R::lineBreak } },
        { "w:cr", { &R::lineBreak } },
        { "w:noBreakHyphen", { &R::noBreakHyphen } },
        { "w:softHyphen", { &R::softHyphen } },
        { "w:sym", { &R::symbol } },
        { "w:txbxContent", { &R::startBox } },
        // Links, fields, notes, pictures
        { "w:hyperlink", { &R::startHyperlink, &R::endHyperlink } },
        { "w:hlink", { &R::startHlink, &R::endHyperlink } },
        { "w:fldChar", { &R::fieldCharacter } },
        { "w:fldSimple", { &R::startSimpleField, &R::endHyperlink } },
        { "w:footnote", { &R::startNote, &R::endNote } },
        { "w:endnote", { &R::startNote, &R::endNote } },
        { "w:footnoteReference", { &R::noteReference } },
        { "w:endnoteReference", { &R::endnoteReference } },
        { "w:footnoteRef", { &R::noteMark } },
        { "w:endnoteRef", { &R::noteMark } },
        { "wp:extent", { &R::extent } },
        { "v:shape", { &R::shape } },
        { "w:binData", { &R::pictureData, &R::endText } },
        { "a:blip", { &R::blip } },
        { "v:imagedata", { &R::imageData } },
        // Tables
        { "w:tbl", { &R::startTable, &R::endTable } },
        { "w:tr", { nullptr, &R::endRow } },
        { "w:tc", { &R::startCell, &R::endCell } },
        { "w:gridSpan", { &R::columnSpan } },
        { "w:tcW", { &R::cellWidth } },
        { "w:tblStyle", { &R::tableStyle } },
        { "w:tcBorders", { &R::startCellBorders, &R::endBorders } },
        { "w:tblBorders", { &R::startTableBorders, &R::endBorders } },
        { "w:top", { &R::border } },
        { "w:left", { &R::border } },
        { "w:bottom", { &R::border } },
        { "w:right", { &R::border } },
        // Styles and lists
        { "w:style", { &R::startStyle, &R::endStyle } },
        { "w:basedOn", { &R::basedOn } },
        { "w:docDefaults", { &R::startDefaults, &R::endDefaults } },
        { "w:abstractNum", { &R::startList } },
        { "w:listDef", { &R::startList } },
        { "w:lvl", { &R::startListLevel, &R::endListLevel } },
        { "w:start", { &R::levelStart } },
        { "w:numFmt", { &R::levelFormat } },
        { "w:nfc", { &R::levelNumber } },
        { "w:lvlText", { &R::levelText } },
        { "w:num", { &R::startNumber, &R::endNumber } },
        { "w:list", { &R::startNumber, &R::endNumber } },
        { "w:abstractNumId", { &R::numberOf } },
        { "w:ilst", { &R::numberOf } },
        { "w:lvlOverride", { &R::startLevelOverride, &R::endListLevel } },
        { "w:startOverride", { &R::levelStart } },
        { "w:pgSz", { &R::pageSize } },
        { "w:pgMar", { &R::pageMargins } },
        // Properties
        { "w:rPr", { &R::startLetters, &R::endLetters } },
        { "w:pPr", { &R::startParagraphProperties, &R::endParagraphProperties } },
        { "w:tabs", { nullptr, &R::endTabs } },
        { "w:shd", { &R::shading } },
    };
    return table;
}

// What was deleted or stood elsewhere, earlier looks, the half of an alternative that others don't need, and
// heads and feet of pages.
bool WordReader::isSkipped(std::string_view name)
{
    static constexpr std::array<std::string_view, 16> Names { "mc:Fallback", "w:del", "w:ftr", "w:hdr",
        "w:moveFrom", "w:numPicBullet", "w:pPrChange", "w:rPrChange", "w:rt", "w:sdtPr", "w:sectPrChange",
        "w:tblPrChange", "w:tblPrExChange", "w:tblStylePr", "w:tcPrChange", "w:trPrChange" };
    return std::ranges::binary_search(Names, name);
}

void WordReader::read(const Data& part, const Relations& relations)
{
    m_relations = &relations;
    XMLParser::parse(part, *this);
    m_relations = nullptr;
    // A part that breaks off leaves things open.
    m_skipped = 0;
    while (!m_paragraphs.empty())
        endParagraph();
    m_runs.clear();
    m_runStyles.clear();
    m_fields.clear();
    m_links.clear();
    m_letters = nullptr;
    m_paragraph = nullptr;
    m_style = nullptr;
    m_target = TextTarget::None;
}

AttributedString WordReader::finish() && { return std::move(m_text).finish(documentAttributes()); }

bool WordReader::takeElement(std::string_view name, const XMLAttributes& attributes)
{
    return (m_letters && letterProperty(name, attributes))
        || (m_paragraph && !m_letters && paragraphProperty(name, attributes));
}

void WordReader::foundCharacters(const String& characters)
{
    switch (m_target) {
    case TextTarget::Run:
        return appendText(m_keepsBlanks ? characters.view() : withoutBlanks(characters));
    case TextTarget::Instruction:
        if (!m_fields.empty())
            m_fields.back().instruction.append(characters.view());
        return;
    case TextTarget::Picture:
        if (const auto bytes = dataFromBase64(characters))
            m_pictures[m_pictureName] = *bytes;
        return;
    case TextTarget::None:
        if (m_skipped == 0)
            m_properties.characters(characters);
    }
}

void WordReader::startBody(const XMLAttributes&) { m_hasBody = true; }

void WordReader::endBody()
{
    while (!m_paragraphs.empty())
        endParagraph();
}

// Only damaged documents have one among properties, which end there.
void WordReader::startParagraph(const XMLAttributes&)
{
    m_letters = nullptr;
    m_paragraph = nullptr;
    m_paragraphs.emplace_back();
    m_runs.emplace_back();
    m_runStyles.emplace_back();
}

void WordReader::endParagraph()
{
    if (m_paragraphs.empty())
        return;
    if (m_paragraphs.size() == m_paragraphsOutside)
        endNote(); // It broke off.
    if (isWanted()) {
        beginParagraph();
        m_runs.back() = {};
        m_runStyles.back() = {};
        m_text.endParagraph(paragraphStyle(), runStyle());
    }
    m_letters = nullptr;
    m_paragraph = nullptr;
    m_paragraphs.pop_back();
    m_runs.pop_back();
    m_runStyles.pop_back();
}

void WordReader::startRun(const XMLAttributes&)
{
    if (m_runs.empty())
        return;
    m_runs.back() = {};
    m_runStyles.back() = {};
}

void WordReader::endRun() { m_target = TextTarget::None; }

void WordReader::startText(const XMLAttributes& attributes)
{
    m_target = TextTarget::Run;
    m_keepsBlanks = attributes.utf8("xml:space") == "preserve" || !m_parts;
}

void WordReader::startInstruction(const XMLAttributes&) { m_target = TextTarget::Instruction; }

void WordReader::endText() { m_target = TextTarget::None; }

void WordReader::tab(const XMLAttributes& attributes)
{
    if (m_isInTabs)
        tabStop(attributes);
    else
        appendText(u"\t");
}

void WordReader::lineBreak(const XMLAttributes& attributes)
{
    appendText(attributes.utf8("w:type") == "page" ? u"\f" : u"\u2028");
}

void WordReader::noBreakHyphen(const XMLAttributes&) { appendText(u"\u2011"); }

void WordReader::softHyphen(const XMLAttributes&) { appendText(u"\u00AD"); }

// A character by its place in a font, which for symbol fonts is one of Unicode's private ones.
void WordReader::symbol(const XMLAttributes& attributes)
{
    const std::string_view digits = attributes.utf8("w:char").value_or("");
    unsigned code = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
    if (code == 0 || code > 0xFFFF)
        return;
    const auto unit = static_cast<char16_t>(code);
    const char byte = static_cast<char>(code & 0xFF);
    const bool isSymbol = attributes.utf8("w:font") == "Symbol" && (code >= 0xF000 || code < 0x100);
    const auto text = isSymbol ? decodeText({ &byte, 1 }, CFStringEncoding::MacSymbol) : std::nullopt;
    appendText(text ? text->view() : std::u16string_view(&unit, 1));
}

// The paragraph around a box is parted: what stands before it is one of its own.
void WordReader::startBox(const XMLAttributes&)
{
    if (!m_paragraphs.empty() && m_paragraphs.back().hasBegun && !m_text.isAtParagraphStart())
        m_text.endParagraph(paragraphStyle(), runStyle());
}

const String& WordReader::paragraphStyleName() const
{
    const String& name = m_paragraphs.back().style;
    return name.isEmpty() || !m_styles.has(name) ? m_styles.paragraphStyle : name;
}

// The marker of an item is text, in the looks of its paragraph.
void WordReader::beginParagraph()
{
    Paragraph& paragraph = m_paragraphs.back();
    if (std::exchange(paragraph.hasBegun, true))
        return;
    const Style& style = m_styles.resolved(paragraphStyleName());
    paragraph.letters = m_styles.defaults.letters;
    paragraph.letters.lay(style.letters);
    ParagraphProperties properties = style.paragraph;
    properties.lay(paragraph.direct);
    const String list = properties.list.value_or(String());
    const String marker
        = list.isEmpty() ? list : m_numbering.nextMarker(list, properties.listLevel.value_or(0));
    if (marker.isEmpty()) {
        paragraph.direct.list = String();
        return;
    }
    MutableString text;
    text.append(u'\t').append(marker).append(u'\t');
    m_text.append(text.view(), paragraph.letters.style());
}

void WordReader::appendText(std::u16string_view units)
{
    if (m_paragraphs.empty() || units.empty() || !isWanted())
        return;
    if (!m_fields.empty() && !m_fields.back().isResult)
        return;
    beginParagraph();
    const LetterProperties letters = runLetters();
    if (!letters.hidden.value_or(false))
        m_text.append(units, linked(letters));
}

LetterProperties WordReader::runLetters() const
{
    LetterProperties letters = m_paragraphs.back().letters;
    if (!m_runStyles.back().isEmpty())
        letters.lay(m_styles.resolved(m_runStyles.back()).letters);
    letters.lay(m_runs.back());
    return letters;
}

CharacterStyle WordReader::runStyle() const { return linked(runLetters()); }

CharacterStyle WordReader::linked(const LetterProperties& letters) const
{
    CharacterStyle style = letters.style();
    for (const Field& field : m_fields) {
        if (field.isResult && !field.link.isEmpty())
            style.link = field.link;
    }
    if (!m_links.empty() && !m_links.back().isEmpty())
        style.link = m_links.back();
    return style;
}

// Indents come from the list unless what names the list says otherwise itself.
ParagraphStyle WordReader::paragraphStyle()
{
    const Paragraph& paragraph = m_paragraphs.back();
    const ParagraphProperties& named = m_styles.resolved(paragraphStyleName()).paragraph;
    ParagraphProperties all = named;
    all.lay(paragraph.direct);
    const String list = all.list.value_or(String());
    const int level = all.listLevel.value_or(0);
    const ListLevel* definition = list.isEmpty() ? nullptr : m_numbering.level(list, level);
    ParagraphProperties properties = m_styles.defaults.paragraph;
    const bool isListDirect = paragraph.direct.list.has_value();
    if (definition && !isListDirect)
        properties.lay(definition->indents);
    properties.lay(named);
    if (definition && isListDirect)
        properties.lay(definition->indents);
    properties.lay(paragraph.direct);
    return definition ? listItemStyle(properties, m_text.lists(m_numbering, list, level))
                      : properties.style();
}

} // namespace caddis::office
