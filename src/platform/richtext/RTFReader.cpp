#include "platform/richtext/RTFReader.h"

#include "platform/richtext/FieldInstruction.h"
#include "platform/richtext/RTF.h"

#include <algorithm>

namespace caddis {

namespace rtf {

namespace {

constexpr std::size_t DeepestGroup = 1000;

std::u16string_view trimmed(std::u16string_view text)
{
    const std::size_t begin = text.find_first_not_of(u' ');
    return begin == std::u16string_view::npos ? std::u16string_view()
                                              : text.substr(begin, text.find_last_not_of(u' ') + 1 - begin);
}

} // namespace

Reader::Reader(std::string_view bytes, const FileWrapper* package)
    : m_tokens(bytes)
    , m_package(package)
{
    m_state.paragraph = std::make_shared<Paragraph>();
}

AttributedString Reader::read() &&
{
    for (Token token = m_tokens.next(); token.kind != Token::Kind::End; token = m_tokens.next())
        handle(token);
    flushBytes();
    endText();
    closeTables(0);
    if (m_version)
        m_attributes.set(String(DocumentAttribute::CocoaRTFVersion), Value(*m_version));
    if (m_paper.width > 0 && m_paper.height > 0)
        m_attributes.set(String(DocumentAttribute::PaperSize), Value(stringFromSize(m_paper)));
    if (m_view.width > 0 && m_view.height > 0)
        m_attributes.set(String(DocumentAttribute::ViewSize), Value(stringFromSize(m_view)));
    std::ranges::sort(m_coveredBreaks, {}, &AttributedStringBuilder::Insertion::location);
    AttributedString result = std::move(m_builder).finish(m_coveredBreaks);
    result.documentAttributes = std::move(m_attributes);
    return result;
}

// The last paragraph may have no end of its own. Its style went with the group of the document, behind which
// another document may have gone on with it.
void Reader::endText()
{
    if (m_builder.length() == 0 || m_builder.view().back() == u'\n')
        return;
    if (m_states.empty() && m_lastParagraph) {
        m_state.paragraph = m_lastParagraph;
        m_paragraphNumber.reset();
    }
    m_builder.endParagraphs(paragraphNumber());
}

void Reader::handle(const Token& token)
{
    switch (token.kind) {
    case Token::Kind::Open:
        return open();
    case Token::Kind::Close:
        return close();
    case Token::Kind::Text: {
        m_isGroupStart = false;
        const auto skipped = std::min(token.text.size(), static_cast<std::size_t>(m_toSkip));
        m_toSkip -= static_cast<std::int32_t>(skipped);
        const std::string_view text = token.text.substr(skipped);
        if (m_state.destination == Destination::Body && m_bytes.empty() && token.isAscii)
            takeAscii(text);
        else if (m_state.destination != Destination::Skip)
            m_bytes.append(text);
        break;
    }
    case Token::Kind::Byte:
        return takeByte(token.character);
    case Token::Kind::Word:
        return word(token.text, token.number);
    case Token::Kind::Symbol:
        return symbol(token.character);
    case Token::Kind::End:
        break;
    }
}

// Groups beyond the limit are counted, so that each closes what it opened.
void Reader::open()
{
    flushBytes();
    m_toSkip = 0;
    m_isStarred = false;
    m_isGroupStart = true;
    if (m_states.size() >= DeepestGroup) {
        ++m_uncountedGroups;
        return;
    }
    m_states.push_back(m_state);
    m_state.ownsDestination = false;
}

void Reader::close()
{
    flushBytes();
    m_toSkip = 0;
    m_isStarred = false;
    m_isGroupStart = false;
    if (m_uncountedGroups > 0) {
        --m_uncountedGroups;
        return;
    }
    if (m_states.empty())
        return;
    if (m_states.size() == 1)
        m_lastParagraph = m_state.paragraph;
    const bool owned = m_state.ownsDestination;
    const Destination destination = m_state.destination;
    if (m_state.paragraph != m_states.back().paragraph)
        m_paragraphNumber.reset();
    m_state = std::move(m_states.back());
    m_states.pop_back();
    m_styleNumber.reset();
    if (owned)
        finishDestination(destination);
}

void Reader::begin(Destination destination)
{
    m_text.clear();
    m_state.destination = destination;
    m_state.ownsDestination = true;
}

std::size_t LettersHash::operator()(const Letters& letters) const
{
    const auto mix = [](std::size_t state, std::int32_t value) {
        return (state ^ static_cast<std::uint32_t>(value)) * 0x9E3779B97F4A7C15 + (state >> 29);
    };
    const int marks = static_cast<int>(letters.underline) << 16 | static_cast<int>(letters.strikethrough) << 8
        | int { letters.bold } << 2 | int { letters.italic } << 1 | int { letters.hidden };
    std::size_t state = 1;
    for (const std::int32_t value : { letters.font, letters.size, letters.foreground, letters.background,
             letters.superscript, letters.baseline, letters.kern, letters.link, marks })
        state = mix(state, value);
    return state ^ state >> 32;
}

CharacterStyle Reader::characterStyle() const
{
    const Letters& letters = m_state.letters;
    const FontEntry* entry = font();
    CharacterStyle style;
    if (entry && !entry->name.isEmpty())
        style.font.name = entry->name;
    style.font.size = letters.size / 1000.0;
    style.font.bold = letters.bold;
    style.font.italic = letters.italic;
    style.underline = letters.underline;
    style.strikethrough = letters.strikethrough;
    style.foreground = m_colors.color(letters.foreground);
    style.background = m_colors.color(letters.background);
    style.superscript = letters.superscript;
    style.baselineOffset = letters.baseline / 2.0;
    style.kern = letters.kern / 20.0;
    if (letters.link >= 0)
        style.link = m_links[static_cast<std::size_t>(letters.link)];
    return style;
}

AttributedStringBuilder::StyleNumber Reader::styleNumber()
{
    if (m_styleNumber)
        return *m_styleNumber;
    auto known = m_styleNumbers.find(m_state.letters);
    if (known == m_styleNumbers.end())
        known = m_styleNumbers.emplace(m_state.letters, m_builder.numberOf(characterStyle())).first;
    m_styleNumber = known->second;
    return known->second;
}

void Reader::endParagraph()
{
    if (m_state.destination != Destination::Body)
        return;
    m_builder.append(u"\n", styleNumber());
    m_builder.endParagraphs(paragraphNumber());
}

Paragraph& Reader::editParagraph()
{
    m_paragraphNumber.reset();
    if (m_state.paragraph.use_count() > 1)
        m_state.paragraph = std::make_shared<Paragraph>(*m_state.paragraph);
    return *m_state.paragraph;
}

// What stands in a table has its place in its style, so each of its paragraphs has one of its own.
AttributedStringBuilder::ParagraphNumber Reader::paragraphNumber()
{
    if (m_paragraphNumber)
        return *m_paragraphNumber;
    const auto number = m_builder.numberOf(paragraphStyle());
    if (m_openTables.empty())
        m_paragraphNumber = number;
    return number;
}

ParagraphStyle Reader::paragraphStyle()
{
    openTables();
    const Paragraph& paragraph = *m_state.paragraph;
    ParagraphStyle style = paragraph.style;
    style.firstLineIndent = style.headIndent + paragraph.firstLine / 20.0;
    if (paragraph.lineHeight != 0 && paragraph.isLineMultiple) {
        style.lineHeightMultiple = paragraph.lineHeight / 240.0;
    } else if (paragraph.lineHeight != 0) {
        style.minimumLineHeight = std::abs(paragraph.lineHeight / 20.0);
        if (paragraph.lineHeight < 0)
            style.maximumLineHeight = style.minimumLineHeight;
    }
    if (paragraph.list > 0)
        style.lists = m_listTable.lists(paragraph.list, paragraph.listLevel, m_builder);
    for (OpenTable& open : m_openTables) {
        open.columns = std::max(open.columns, open.column + 1);
        TableCell cell;
        cell.table = open.table;
        cell.row = open.row;
        cell.column = open.column;
        style.cells.push_back(cell);
    }
    return style;
}

void Reader::finishDestination(Destination destination)
{
    switch (destination) {
    case Destination::Fonts:
    case Destination::Colors:
    case Destination::ExpandedColors:
        return m_styleNumbers.clear();
    case Destination::Instruction:
        return finishInstruction();
    case Destination::Graphic:
        return finishGraphic();
    case Destination::InfoText:
    case Destination::InfoTime:
        return finishInfo();
    case Destination::Marker:
        return m_listTable.setMarker(m_text);
    case Destination::LevelText:
        return m_listTable.setLevelText(m_text);
    default:
        return;
    }
}

void Reader::finishInstruction()
{
    String target = linkOfFieldInstruction(m_text);
    if (target.isEmpty())
        return;
    m_links.push_back(std::move(target));
    m_state.fieldLink = static_cast<std::int32_t>(m_links.size() - 1);
}

// The rest of the group around it is the byte that readers without attachments would show.
void Reader::finishGraphic()
{
    const String name = safeMemberName(String(trimmed(m_text)));
    const FileWrapper* member = m_package ? m_package->member(name) : nullptr;
    if (member && m_state.destination == Destination::Body)
        m_builder.appendAttachment({ *member, m_graphicSize }, characterStyle());
    if (m_states.size() > 1)
        m_state.destination = Destination::Skip;
}

} // namespace rtf

std::optional<AttributedString> attributedStringWithRTF(const Data& rtf, const FileWrapper* package)
{
    if (!rtf.chars().starts_with("{\\rtf"))
        return std::nullopt;
    AttributedString text = rtf::Reader(rtf.chars(), package).read();
    text.documentAttributes.set(
        String(DocumentAttribute::DocumentType), Value(package ? u"NSRTFD"_s : u"NSRTF"_s));
    text.documentAttributes.set(
        String(DocumentAttribute::UTI), Value(package ? u"com.apple.rtfd"_s : u"public.rtf"_s));
    return text;
}

} // namespace caddis
