// The control words that say how letters, paragraphs and cells look.

#include "platform/richtext/RTFReader.h"

#include <algorithm>

namespace caddis::rtf {

namespace {

double points(std::int32_t twips) { return twips / 20.0; }

} // namespace

bool Reader::characterWord(std::string_view name, Number number)
{
    Letters letters = m_state.letters;
    const std::int32_t value = number.value_or(0);
    const bool isOn = number.value_or(1) != 0;
    if (name == "f")
        letters.font = value;
    else if (name == "fs")
        letters.size = std::clamp(number.value_or(24), 1, 4000) * 500;
    else if (name == "fsmilli")
        letters.size = std::clamp(value, 1, 2000000);
    else if (name == "b")
        letters.bold = isOn;
    else if (name == "i")
        letters.italic = isOn;
    else if (name == "cf")
        letters.foreground = value;
    else if (name == "cb" || name == "highlight" || name == "chcbpat")
        letters.background = value;
    else if (name == "ul" || name == "uld" || name == "ulw" || name == "uldash")
        letters.underline = isOn ? LineStyle::Single : LineStyle::None;
    else if (name == "uldb")
        letters.underline = isOn ? LineStyle::Double : LineStyle::None;
    else if (name == "ulth")
        letters.underline = isOn ? LineStyle::Thick : LineStyle::None;
    else if (name == "ulnone")
        letters.underline = LineStyle::None;
    else if (name == "strike")
        letters.strikethrough = isOn ? LineStyle::Single : LineStyle::None;
    else if (name == "striked")
        letters.strikethrough = isOn ? LineStyle::Double : LineStyle::None;
    else if (name == "super")
        letters.superscript = number.value_or(1);
    else if (name == "sub")
        letters.superscript = -number.value_or(1);
    else if (name == "nosupersub")
        letters.superscript = 0;
    else if (name == "up")
        letters.baseline = number.value_or(6);
    else if (name == "dn")
        letters.baseline = -number.value_or(6);
    else if (name == "expndtw")
        letters.kern = value;
    else if (name == "v")
        letters.hidden = isOn;
    else if (name == "plain")
        letters = Letters { .link = letters.link };
    else
        return false;
    if (letters != m_state.letters) {
        flushUnits();
        m_state.letters = letters;
    }
    return true;
}

// Groups copy their stops, so there can't be any number of them.
void Reader::addTabStop(double location)
{
    constexpr std::size_t MostStops = 64;
    auto& stops = m_state.paragraph.style.tabStops;
    const TabAlignment alignment = std::exchange(m_state.paragraph.nextTab, TabAlignment::Left);
    if (stops.size() < MostStops)
        stops.push_back({ location, alignment });
}

bool Reader::paragraphWord(std::string_view name, Number number)
{
    Paragraph& paragraph = m_state.paragraph;
    ParagraphStyle& style = paragraph.style;
    const std::int32_t value = number.value_or(0);
    if (name == "pard")
        paragraph = {};
    else if (name == "ql" || name == "pardirnatural")
        style.alignment = name == "ql" ? TextAlignment::Left : style.alignment;
    else if (name == "qc")
        style.alignment = TextAlignment::Center;
    else if (name == "qr")
        style.alignment = TextAlignment::Right;
    else if (name == "qj")
        style.alignment = TextAlignment::Justified;
    else if (name == "ltrpar")
        style.direction = WritingDirection::LeftToRight;
    else if (name == "rtlpar")
        style.direction = WritingDirection::RightToLeft;
    else if (name == "tx")
        addTabStop(points(value));
    else if (name == "tqc")
        paragraph.nextTab = TabAlignment::Center;
    else if (name == "tqr")
        paragraph.nextTab = TabAlignment::Right;
    else if (name == "tqdec")
        paragraph.nextTab = TabAlignment::Decimal;
    else if (name == "ls")
        paragraph.list = value;
    else if (name == "ilvl")
        paragraph.listLevel = value;
    else if (name == "intbl")
        paragraph.tableLevel = std::max(paragraph.tableLevel, 1);
    else if (name == "itap")
        paragraph.tableLevel = std::max(value, 0);
    else if (name == "outlinelevel")
        style.headerLevel = static_cast<std::uint8_t>(value >= 0 && value < 6 ? value + 1 : 0);
    else
        return spacingWord(name, value);
    return true;
}

bool Reader::spacingWord(std::string_view name, std::int32_t value)
{
    Paragraph& paragraph = m_state.paragraph;
    ParagraphStyle& style = paragraph.style;
    if (name == "li")
        style.headIndent = points(value);
    else if (name == "fi")
        paragraph.firstLine = value;
    else if (name == "ri")
        style.tailIndent = -points(value);
    else if (name == "sb")
        style.spacingBefore = points(value);
    else if (name == "sa")
        style.spacingAfter = points(value);
    else if (name == "sl")
        paragraph.lineHeight = value;
    else if (name == "slmult")
        paragraph.isLineMultiple = value == 1;
    else if (name == "slleading")
        style.lineSpacing = points(value);
    else if (name == "slminimum")
        style.minimumLineHeight = points(value);
    else if (name == "slmaximum")
        style.maximumLineHeight = points(value);
    else if (name == "pardeftab")
        style.defaultTabInterval = points(value);
    else if (name == "parhyphenfactor")
        style.hyphenationFactor = value / 100.0;
    else
        return false;
    return true;
}

// Rows and cells. Definitions of nested rows come behind their cells and are not looked at.
bool Reader::rowWord(std::string_view name, Number number)
{
    const std::int32_t value = number.value_or(0);
    const bool isOuter = m_state.paragraph.tableLevel <= 1;
    if (name == "cell" || name == "nestcell") {
        endCell();
    } else if (name == "row" || name == "nestrow") {
        endRow();
    } else if (name == "trowd") {
        if (isOuter)
            m_cells.clear();
        m_nextCell = {};
    } else if (name == "cellx") {
        m_nextCell.right = points(value);
        if (isOuter)
            m_cells.push_back(m_nextCell);
        m_nextCell = {};
        m_isCellBorder = false;
    } else if (name == "clcbpat") {
        m_nextCell.background = value;
    } else if (name == "brdrw") {
        if (m_isCellBorder)
            m_nextCell.borderWidth = std::clamp(value, 0, 2000);
    } else if (name == "brdrcf") {
        if (m_isCellBorder)
            m_nextCell.borderColor = value;
    } else if (name.starts_with("clbrdr") || name.starts_with("trbrdr")) {
        m_isCellBorder = name[0] == 'c';
    } else {
        return false;
    }
    return true;
}

} // namespace caddis::rtf
