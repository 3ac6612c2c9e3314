#include "platform/office/OpenDocumentReader.h"

#include "platform/base/Base64.h"
#include "platform/office/Values.h"

#include <algorithm>
#include <array>
#include <utility>

namespace caddis::office {

const OpenDocumentReader::Elements& OpenDocumentReader::elements()
{
    using R = OpenDocumentReader;
    static const Elements table {
        // Text
        { "office:text", { &R::startText } },
        { "text:p", { &R::startParagraph, &R::endParagraph } },
        { "text:h", { &R::startHeading, &R::endParagraph } },
        { "text:span", { &R::startSpan, &R::endSpan } },
        { "text:a", { &R::startLink, &R::endLink } },
        { "text:s", { &R::blanks } },
        { "text:tab", { &R::tab } },
        { "text:line-break", { &R::lineBreak } },
        { "text:list", { &R::startList, &R::endList } },
        { "text:list-item", { &R::startItem } },
        { "text:list-header", { &R::startListHeader } },
        { "text:note", { &R::startNote } },
        { "text:note-citation", { &R::startCitation, &R::endCitation } },
        { "text:note-body", { &R::startNoteBody, &R::endNoteBody } },
        // Tables, pictures and boxes
        { "table:table", { &R::startTable, &R::endTable } },
        { "table:table-row", { nullptr, &R::endRow } },
        { "table:table-cell", { &R::startCell, &R::endCell } },
        { "table:covered-table-cell", { &R::coveredCell } },
        { "draw:frame", { &R::startFrame, &R::endFrame } },
        { "draw:image", { &R::startImage, &R::endImage } },
        { "office:binary-data", { &R::startBinary } },
        { "draw:text-box", { &R::startBox } },
        // Styles
        { "style:font-face", { &R::startFontFace } },
        { "style:style", { &R::startStyle, &R::endStyle } },
        { "style:default-style", { &R::startDefaultStyle, &R::endStyle } },
        { "style:text-properties", { &R::letterProperties } },
        { "style:paragraph-properties", { &R::paragraphProperties } },
        { "style:tab-stop", { &R::tabStop } },
        { "style:table-cell-properties", { &R::cellProperties } },
        { "text:list-style", { &R::startListStyle, &R::endListStyle } },
        { "text:list-level-style-number", { &R::numberLevel, &R::endLevel } },
        { "text:list-level-style-bullet", { &R::bulletLevel, &R::endLevel } },
        { "text:list-level-style-image", { &R::bulletLevel, &R::endLevel } },
        { "style:list-level-properties", { &R::levelProperties } },
        { "style:list-level-label-alignment", { &R::levelProperties } },
        { "style:page-layout-properties", { &R::pageLayout } },
    };
    return table;
}

// Comments, what was deleted, heads and feet of pages, and what other programs are to make something of.
bool OpenDocumentReader::isSkipped(std::string_view name)
{
    static constexpr std::array<std::string_view, 16> Names { "draw:object", "draw:object-ole",
        "office:annotation", "office:forms", "office:scripts", "style:footer", "style:footer-first",
        "style:footer-left", "style:header", "style:header-first", "style:header-left", "svg:desc",
        "svg:title", "text:ruby-text", "text:table-of-content-source", "text:tracked-changes" };
    return std::ranges::binary_search(Names, name);
}

String styleName(std::u16string_view family, std::u16string_view name)
{
    MutableString text;
    text.append(family).append(u' ').append(name);
    return std::move(text).take();
}

void OpenDocumentReader::read(const Data& part)
{
    XMLParser::parse(part, *this);
    // A part that breaks off leaves things open.
    m_skipped = 0;
    m_target = TextTarget::None;
    while (!m_paragraphs.empty())
        endParagraph();
    m_lists.clear();
    m_frames.clear();
    m_style = nullptr;
    m_level = nullptr;
    m_listLevels = nullptr;
}

AttributedString OpenDocumentReader::finish() && { return std::move(m_text).finish(documentAttributes()); }

void OpenDocumentReader::foundCharacters(const String& characters)
{
    if (m_skipped > 0)
        return;
    switch (m_target) {
    case TextTarget::Paragraph:
        return appendCollapsed(characters);
    case TextTarget::Citation:
        m_noteMark = characters;
        return;
    case TextTarget::Picture:
        if (const auto bytes = dataFromBase64(characters))
            picture(m_frames.empty() ? String() : m_frames.back().name, *bytes);
        return;
    case TextTarget::None:
        m_properties.characters(characters);
    }
}

void OpenDocumentReader::startText(const XMLAttributes&) { m_hasText = true; }

void OpenDocumentReader::startParagraph(const XMLAttributes& attributes)
{
    const Style& style
        = m_styles.resolved(styleName(u"paragraph", attributes.value("text:style-name").value_or(String())));
    Paragraph paragraph;
    paragraph.properties = style.paragraph;
    paragraph.letters = m_styles.defaults.letters;
    paragraph.letters.lay(style.letters);
    if (!m_lists.empty())
        paragraph.isItemStart = std::exchange(m_lists.back().isItemStart, false);
    m_paragraphs.push_back(std::move(paragraph));
    m_target = TextTarget::Paragraph;
}

void OpenDocumentReader::startHeading(const XMLAttributes& attributes)
{
    constexpr std::int32_t DeepestHeading = 6;
    startParagraph(attributes);
    const std::int32_t level = integerAtFront(attributes.utf8("text:outline-level").value_or("1"));
    m_paragraphs.back().direct.headerLevel
        = static_cast<std::uint8_t>(level >= 1 && level <= DeepestHeading ? level : 0);
}

void OpenDocumentReader::endParagraph()
{
    if (m_paragraphs.empty())
        return;
    if (m_paragraphs.size() == m_paragraphsOutside) {
        m_noteDepth = 1;
        endNoteBody(); // It broke off.
    }
    beginParagraph();
    m_paragraphs.back().spans.clear();
    m_paragraphs.back().links.clear();
    m_text.endParagraph(paragraphStyle(), letterStyle());
    m_paragraphs.pop_back();
    m_target = m_paragraphs.empty() ? TextTarget::None : TextTarget::Paragraph;
}

void OpenDocumentReader::startSpan(const XMLAttributes& attributes)
{
    if (m_paragraphs.empty())
        return;
    auto& spans = m_paragraphs.back().spans;
    const Style& style
        = m_styles.resolved(styleName(u"text", attributes.value("text:style-name").value_or(String())));
    LetterProperties letters = spans.empty() ? LetterProperties() : spans.back();
    letters.lay(style.letters);
    spans.push_back(std::move(letters));
}

void OpenDocumentReader::endSpan()
{
    if (!m_paragraphs.empty() && !m_paragraphs.back().spans.empty())
        m_paragraphs.back().spans.pop_back();
}

// A link is a span too: it may name a style.
void OpenDocumentReader::startLink(const XMLAttributes& attributes)
{
    if (m_paragraphs.empty())
        return;
    m_paragraphs.back().links.push_back(attributes.value("xlink:href").value_or(String()));
    startSpan(attributes);
}

void OpenDocumentReader::endLink()
{
    if (m_paragraphs.empty() || m_paragraphs.back().links.empty())
        return;
    m_paragraphs.back().links.pop_back();
    endSpan();
}

void OpenDocumentReader::blanks(const XMLAttributes& attributes)
{
    constexpr std::int32_t Most = 4096;
    const std::int32_t count = integerAtFront(attributes.utf8("text:c").value_or("1"));
    appendText(std::u16string(static_cast<std::size_t>(std::clamp(count, 1, Most)), u' '));
}

void OpenDocumentReader::tab(const XMLAttributes&) { appendText(u"\t"); }

void OpenDocumentReader::lineBreak(const XMLAttributes&) { appendText(u"\u2028"); }

// A list in an item is the next level, of the same style unless it names one.
void OpenDocumentReader::startList(const XMLAttributes& attributes)
{
    const auto style = attributes.value("text:style-name");
    const bool goesOn
        = attributes.utf8("text:continue-numbering") == "true" || attributes.utf8("text:continue-list");
    OpenList list;
    if (style)
        list.style = *style;
    else if (!m_lists.empty())
        list.style = m_lists.back().style;
    if (m_lists.empty() && !goesOn)
        m_numbering.restart(list.style);
    m_lists.push_back(std::move(list));
}

void OpenDocumentReader::endList()
{
    if (!m_lists.empty())
        m_lists.pop_back();
}

void OpenDocumentReader::startItem(const XMLAttributes& attributes)
{
    if (m_lists.empty())
        return;
    m_lists.back().isItemStart = true;
    const int level = static_cast<int>(std::min<std::size_t>(m_lists.size() - 1, LastListLevel));
    if (const auto start = attributes.utf8("text:start-value"))
        m_numbering.restart(m_lists.back().style, level, integerAtFront(*start));
}

void OpenDocumentReader::startListHeader(const XMLAttributes&)
{
    if (!m_lists.empty())
        m_lists.back().isItemStart = false;
}

void OpenDocumentReader::startNote(const XMLAttributes&) { m_noteMark = {}; }

void OpenDocumentReader::startCitation(const XMLAttributes& attributes)
{
    if (const auto label = attributes.value("text:label"))
        m_noteMark = *label;
    m_target = TextTarget::Citation;
}

void OpenDocumentReader::endCitation()
{
    m_target = m_paragraphs.empty() ? TextTarget::None : TextTarget::Paragraph;
    if (m_paragraphs.empty())
        return;
    LetterProperties raised
        = m_paragraphs.back().spans.empty() ? LetterProperties() : m_paragraphs.back().spans.back();
    raised.superscript = 1;
    m_paragraphs.back().spans.push_back(raised);
    appendText(m_noteMark);
    m_paragraphs.back().spans.pop_back();
}

// The text of a note stands where it is referred to. Notes of notes stay in them.
void OpenDocumentReader::startNoteBody(const XMLAttributes&)
{
    ++m_noteDepth;
    if (m_noteDepth > 1)
        return;
    m_listsOutside = std::exchange(m_lists, {});
    m_paragraphsOutside = m_paragraphs.size();
    m_text.beginNote();
    CharacterStyle raised;
    raised.superscript = 1;
    m_text.append(m_noteMark, raised);
    m_text.append(u" ", {});
}

void OpenDocumentReader::endNoteBody()
{
    if (m_noteDepth == 0 || --m_noteDepth > 0)
        return;
    m_text.endNote();
    m_paragraphsOutside = 0;
    m_lists = std::exchange(m_listsOutside, {});
}

void OpenDocumentReader::beginParagraph()
{
    Paragraph& paragraph = m_paragraphs.back();
    if (std::exchange(paragraph.hasBegun, true) || m_lists.empty())
        return;
    paragraph.direct.list = m_lists.back().style;
    paragraph.direct.listLevel = static_cast<int>(std::min<std::size_t>(m_lists.size() - 1, LastListLevel));
    const String marker = paragraph.isItemStart
        ? m_numbering.nextMarker(*paragraph.direct.list, *paragraph.direct.listLevel)
        : String();
    if (marker.isEmpty()) {
        paragraph.direct.list.reset();
        return;
    }
    MutableString text;
    text.append(u'\t').append(marker).append(u'\t');
    m_text.append(text.view(), paragraph.letters.style());
}

void OpenDocumentReader::appendText(std::u16string_view units)
{
    if (m_paragraphs.empty() || units.empty())
        return;
    beginParagraph();
    Paragraph& paragraph = m_paragraphs.back();
    paragraph.endsWithBlank = false;
    if (paragraph.spans.empty() || !paragraph.spans.back().hidden.value_or(false))
        m_text.append(units, letterStyle());
}

// Blanks and line ends in the markup are one blank together, and none at the front of a paragraph.
void OpenDocumentReader::appendCollapsed(std::u16string_view units)
{
    if (m_paragraphs.empty())
        return;
    std::u16string text;
    bool endsWithBlank = m_paragraphs.back().endsWithBlank;
    for (const char16_t unit : units) {
        const bool isBlank = unit == u' ' || unit == u'\n' || unit == u'\t' || unit == u'\r';
        if (!isBlank || !endsWithBlank)
            text += isBlank ? u' ' : unit;
        endsWithBlank = isBlank;
    }
    appendText(text);
    m_paragraphs.back().endsWithBlank = endsWithBlank;
}

CharacterStyle OpenDocumentReader::letterStyle() const
{
    const Paragraph& paragraph = m_paragraphs.back();
    LetterProperties letters = paragraph.letters;
    if (!paragraph.spans.empty())
        letters.lay(paragraph.spans.back());
    CharacterStyle style = letters.style();
    if (!paragraph.links.empty())
        style.link = paragraph.links.back();
    return style;
}

// Paragraphs of an item behind its first are indented like it.
ParagraphStyle OpenDocumentReader::paragraphStyle()
{
    const Paragraph& paragraph = m_paragraphs.back();
    ParagraphProperties properties = m_styles.defaults.paragraph;
    properties.lay(paragraph.properties);
    const ListLevel* level = m_lists.empty()
        ? nullptr
        : m_numbering.level(
            m_lists.back().style, paragraph.direct.listLevel.value_or(static_cast<int>(m_lists.size()) - 1));
    if (level)
        properties.lay(level->indents);
    properties.lay(paragraph.direct);
    if (level && paragraph.direct.list)
        return listItemStyle(properties,
            m_text.lists(m_numbering, *paragraph.direct.list, paragraph.direct.listLevel.value_or(0)));
    if (level)
        properties.firstLine = 0;
    return properties.style();
}

} // namespace caddis::office
