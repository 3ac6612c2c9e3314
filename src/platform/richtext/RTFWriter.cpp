#include "platform/richtext/RTFWriter.h"

#include "platform/richtext/RTFEscapes.h"

#include <algorithm>
#include <cmath>

namespace caddis {

namespace rtf {

namespace {

constexpr std::string_view Version = "2639"; // Readers of the platform take its own words from such writers.

// Characters with a word of their own: as bare numbers, most readers show nothing for them.
constexpr std::u16string_view Breaks = u"\u2028\f";

long twips(double points) { return std::abs(points) < 1e6 ? std::lround(points * 20) : 0; }

std::string_view alignmentWord(TextAlignment alignment)
{
    constexpr std::array<std::string_view, 5> Words { "", "\\ql", "\\qc", "\\qr", "\\qj" };
    return Words[static_cast<std::size_t>(alignment)];
}

std::string_view tabWord(TabAlignment alignment)
{
    constexpr std::array<std::string_view, 4> Words { "", "\\tqc", "\\tqr", "\\tqdec" };
    return Words[static_cast<std::size_t>(alignment)];
}

std::string_view underlineWord(LineStyle style)
{
    switch (style) {
    case LineStyle::None:
        return "\\ulnone";
    case LineStyle::Thick:
        return "\\ulth";
    case LineStyle::Double:
        return "\\uldb";
    default:
        return "\\ul";
    }
}

std::string_view strikeWord(LineStyle style)
{
    if (style == LineStyle::None)
        return "\\strike0\\striked0";
    return style == LineStyle::Double ? "\\strike0\\striked1" : "\\striked0\\strike";
}

void appendTwips(std::string& out, std::string_view word, double points)
{
    if (const long number = twips(points))
        appendWord(out, word, number);
}

} // namespace

Writer::Writer(
    const AttributedString& text, RTFAttachments attachments, const std::vector<String>& memberNames)
    : m_text(text)
    , m_attachments(attachments)
    , m_memberNames(memberNames)
    , m_tables(text)
{
}

std::string Writer::write(const Dictionary& attributes) &&
{
    const std::u16string_view text = m_text.string();
    m_out.reserve(text.size() + text.size() / 4 + 1024);
    m_out = "{\\rtf1\\ansi\\ansicpg1252\\cocoartf";
    m_out += Version;
    m_out += "\n\\cocoatextscaling0\\cocoaplatform0";
    m_tables.append(m_out);
    appendDocumentAttributes(m_out, attributes);
    const auto runs = m_text.paragraphRuns();
    const auto styles = m_text.paragraphStyles();
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t found = text.find(u'\n', begin);
        const std::size_t end = found == text.npos ? text.size() : found + 1;
        const ParagraphStyle& style = styles[runs[m_paragraphRun].style];
        const bool isLastOfRun = m_paragraphRun + 1 < runs.size() && runs[m_paragraphRun + 1].location <= end;
        const std::size_t next = m_paragraphRun + (isLastOfRun ? 1 : 0);
        paragraph({ begin, end - begin }, style, end < text.size() ? &styles[runs[next].style] : nullptr);
        m_paragraphRun = next;
        begin = end;
    }
    setLink({});
    m_out += '}';
    return std::move(m_out);
}

void Writer::paragraph(Range range, const ParagraphStyle& style, const ParagraphStyle* next)
{
    if (!style.cells.empty() && !m_link.isEmpty())
        setLink({});
    beginRows(style);
    m_cells = style.cells;
    if (m_paragraph != &style) {
        paragraphProperties(style);
        m_paragraph = &style;
        m_isParagraphInField = !m_link.isEmpty();
    }
    const bool isEnded = m_text.string()[range.end() - 1] == u'\n';
    const bool endsCell = isEnded && !style.cells.empty()
        && (!next || commonCells(style.cells, next->cells) < style.cells.size());
    // The line break has a style of its own, which is set before its word.
    pieces(range);
    if (endsCell)
        endCells(style, next);
    else if (isEnded)
        m_out += "\\\n";
}

void Writer::paragraphProperties(const ParagraphStyle& style)
{
    m_out += "\\pard";
    if (!style.cells.empty()) {
        m_out += "\\intbl";
        appendWord(m_out, "itap", static_cast<long>(style.cells.size()));
    }
    for (const TabStop& stop : style.tabStops) {
        m_out += tabWord(stop.alignment);
        appendWord(m_out, "tx", twips(stop.location));
    }
    appendTwips(m_out, "pardeftab", style.defaultTabInterval);
    appendTwips(m_out, "li", style.headIndent);
    appendTwips(m_out, "fi", style.firstLineIndent - style.headIndent);
    appendTwips(m_out, "ri", -style.tailIndent);
    appendTwips(m_out, "sb", style.spacingBefore);
    appendTwips(m_out, "sa", style.spacingAfter);
    lineProperties(style);
    m_out += style.direction == WritingDirection::LeftToRight ? "\\ltrpar"
        : style.direction == WritingDirection::RightToLeft    ? "\\rtlpar"
                                                              : "\\pardirnatural";
    m_out += alignmentWord(style.alignment);
    if (style.headerLevel > 0)
        appendWord(m_out, "outlinelevel", style.headerLevel - 1);
    m_out += '\n';
    if (const std::size_t list = m_tables.list(style.lists)) {
        appendWord(m_out, "ls", static_cast<long>(list));
        appendWord(m_out, "ilvl", static_cast<long>(std::min<std::size_t>(style.lists.size() - 1, 8)));
        m_out += ' ';
    }
}

void Writer::lineProperties(const ParagraphStyle& style)
{
    appendTwips(m_out, "slleading", style.lineSpacing);
    if (style.lineHeightMultiple > 0 && style.lineHeightMultiple < 1000) {
        appendWord(m_out, "sl", std::lround(style.lineHeightMultiple * 240));
        m_out += "\\slmult1";
    }
    appendTwips(m_out, "slminimum", style.minimumLineHeight);
    appendTwips(m_out, "slmaximum", style.maximumLineHeight);
    if (style.hyphenationFactor > 0 && style.hyphenationFactor <= 1)
        appendWord(m_out, "parhyphenfactor", std::lround(style.hyphenationFactor * 100));
}

// The runs inside `range`, without the line break that ends it.
void Writer::pieces(Range range)
{
    const auto runs = m_text.runs();
    for (std::size_t begin = range.location; begin < range.end();) {
        while (m_run + 1 < runs.size() && runs[m_run + 1].location <= begin)
            ++m_run;
        const std::size_t runEnd
            = m_run + 1 < runs.size() ? runs[m_run + 1].location : m_text.string().length();
        const std::size_t end = std::min(runEnd, range.end());
        std::u16string_view text = m_text.string().view({ begin, end - begin });
        if (text.ends_with(u'\n'))
            text.remove_suffix(1);
        piece(text, m_text.styles()[runs[m_run].style]);
        begin = end;
    }
}

void Writer::piece(std::u16string_view text, const CharacterStyle& style)
{
    setLink(style.link);
    if (style.attachment != CharacterStyle::NoAttachment)
        return attachment(style);
    characterProperties(style);
    while (true) {
        const std::size_t found = text.find_first_of(Breaks);
        appendEscaped(m_out, text.substr(0, found));
        if (found == text.npos)
            return;
        m_out += text[found] == LineSeparator ? "\\line " : "\\page ";
        text.remove_prefix(found + 1);
    }
}

// A field is a group: what is set inside it ends with it.
void Writer::setLink(const String& link)
{
    if (link == m_link)
        return;
    if (!m_link.isEmpty()) {
        m_out += "}}";
        m_style = std::exchange(m_styleOutside, std::nullopt);
        if (std::exchange(m_isParagraphInField, false) && m_paragraph)
            paragraphProperties(*m_paragraph);
    }
    m_link = link;
    if (link.isEmpty())
        return;
    m_styleOutside = m_style;
    m_out += "{\\field{\\*\\fldinst{HYPERLINK \"";
    std::u16string address(link.view());
    for (std::size_t quote = address.find(u'"'); quote != address.npos; quote = address.find(u'"', quote))
        address.replace(quote, 1, u"%22");
    appendEscaped(m_out, address);
    m_out += "\"}}{\\fldrslt ";
}

void Writer::attachment(const CharacterStyle& style)
{
    if (m_attachments == RTFAttachments::LeftOut || style.attachment >= m_memberNames.size()
        || style.attachment >= m_text.attachments().size())
        return;
    CharacterStyle plain = style;
    plain.attachment = CharacterStyle::NoAttachment;
    characterProperties(plain);
    const Size size = m_text.attachments()[style.attachment].size;
    m_out += "{{\\NeXTGraphic ";
    appendEscaped(m_out, m_memberNames[style.attachment]);
    m_out += ' ';
    appendWord(m_out, "width", twips(size.width));
    m_out += ' ';
    appendWord(m_out, "height", twips(size.height));
    m_out += " \\appleattachmentpadding0 \\appleembedtype0 \\appleaqc\n}\xAC}";
}

void Writer::characterProperties(const CharacterStyle& style)
{
    if (m_style == style)
        return;
    const std::size_t begin = m_out.size();
    const bool isFirst = !m_style;
    const CharacterStyle old = m_style.value_or(CharacterStyle());
    if (isFirst || old.font.name != style.font.name)
        appendWord(m_out, "f", static_cast<long>(m_tables.font(style.font.name)));
    if (old.font.italic != style.font.italic)
        m_out += style.font.italic ? "\\i" : "\\i0";
    if (old.font.bold != style.font.bold)
        m_out += style.font.bold ? "\\b" : "\\b0";
    if (isFirst || old.font.size != style.font.size) {
        const long thousandths = std::lround(std::clamp(style.font.size, 0.001, 2000.0) * 1000);
        appendWord(m_out, "fs", thousandths / 500);
        if (thousandths % 500 != 0)
            appendWord(m_out, "fsmilli", thousandths);
    }
    if (isFirst || old.foreground != style.foreground)
        appendWord(m_out, "cf", static_cast<long>(m_tables.color(style.foreground)));
    if (old.background != style.background) {
        const auto color = static_cast<long>(m_tables.color(style.background));
        appendWord(m_out, "cb", color); // The platform's word; the others know the next one.
        appendWord(m_out, "chcbpat", color);
    }
    if (old.underline != style.underline)
        m_out += underlineWord(style.underline);
    if (old.strikethrough != style.strikethrough)
        m_out += strikeWord(style.strikethrough);
    if (old.kern != style.kern)
        appendWord(m_out, "expndtw", twips(style.kern));
    if (old.superscript != style.superscript) {
        if (style.superscript == 0)
            m_out += "\\nosupersub";
        else
            appendWord(m_out, style.superscript > 0 ? "super" : "sub", std::abs(style.superscript));
    }
    if (old.baselineOffset != style.baselineOffset)
        appendWord(m_out, "up", std::lround(std::clamp(style.baselineOffset, -1e4, 1e4) * 2));
    if (m_out.size() > begin)
        m_out += ' ';
    m_style = style;
}

} // namespace rtf

Data RTFFromString(const AttributedString& text, const Dictionary& attributes, RTFAttachments attachments,
    const std::vector<String>& memberNames)
{
    return Data::adopt(rtf::Writer(text, attachments, memberNames).write(attributes));
}

} // namespace caddis
