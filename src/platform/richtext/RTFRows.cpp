// The words of rows and cells (RTF 1.9.1, "Table Definitions").

#include "platform/richtext/RTFRows.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>

namespace caddis::rtf {

namespace {

constexpr std::int32_t LargestLength = 20 * 1000; // Twips of a padding or a height.

double points(std::int64_t twips) { return static_cast<double>(twips) / 20.0; }

std::int32_t lengthOf(std::int32_t twips) { return std::clamp(twips, 0, LargestLength); }

std::uint8_t sideOf(char letter)
{
    switch (letter) {
    case 't':
        return TableCell::Top;
    case 'l':
        return TableCell::Left;
    case 'b':
        return TableCell::Bottom;
    default:
        return letter == 'r' ? TableCell::Right : 0;
    }
}

} // namespace

struct RowDefinition::Words {
    using Take = void (*)(RowDefinition&, std::int32_t);
    using Table = std::unordered_map<std::string_view, Take>;

    static void addRowWords(Table& words)
    {
        words["trowd"] = [](RowDefinition& row, std::int32_t) { row.begin(); };
        words["lastrow"] = [](RowDefinition& row, std::int32_t) { row.m_isLast = true; };
        words["trleft"] = [](RowDefinition& row, std::int32_t value) { row.m_left = value; };
        words["trgaph"] = [](RowDefinition& row, std::int32_t value) { row.m_gap = lengthOf(value); };
        // Negative: exactly so high.
        words["trrh"] = [](RowDefinition& row, std::int32_t value) {
            row.m_minimumHeight = std::min(std::abs(std::max(value, -LargestLength)), LargestLength);
        };
        words["trpaddt"] = [](RowDefinition& row, std::int32_t value) { row.m_paddingTop = lengthOf(value); };
        words["trpaddl"]
            = [](RowDefinition& row, std::int32_t value) { row.m_paddingLeft = lengthOf(value); };
        words["trpaddb"]
            = [](RowDefinition& row, std::int32_t value) { row.m_paddingBottom = lengthOf(value); };
        words["trpaddr"]
            = [](RowDefinition& row, std::int32_t value) { row.m_paddingRight = lengthOf(value); };
    }

    static void addCellWords(Table& words)
    {
        words["cellx"] = [](RowDefinition& row, std::int32_t value) { row.endCell(value); };
        words["clmrg"] = [](RowDefinition& row, std::int32_t) { row.m_next.isMergedAcross = true; };
        words["clvmgf"] = [](RowDefinition& row, std::int32_t) { row.m_next.isTall = true; };
        words["clvmrg"] = [](RowDefinition& row, std::int32_t) { row.m_next.isMergedDown = true; };
        words["clftsWidth"]
            = [](RowDefinition& row, std::int32_t value) { row.m_next.hasNoWidth = value == 1; };
        words["clcbpat"] = [](RowDefinition& row, std::int32_t value) { row.m_next.background = value; };
        words["clheight"]
            = [](RowDefinition& row, std::int32_t value) { row.m_next.minimumHeight = lengthOf(value); };
        words["clvertalt"]
            = [](RowDefinition& row, std::int32_t) { row.m_next.alignment = VerticalAlignment::Top; };
        words["clvertalc"]
            = [](RowDefinition& row, std::int32_t) { row.m_next.alignment = VerticalAlignment::Middle; };
        words["clvertalb"]
            = [](RowDefinition& row, std::int32_t) { row.m_next.alignment = VerticalAlignment::Bottom; };
        // Office programs have written top and left the wrong way round from the beginning.
        words["clpadl"]
            = [](RowDefinition& row, std::int32_t value) { row.m_next.paddingTop = lengthOf(value); };
        words["clpadt"]
            = [](RowDefinition& row, std::int32_t value) { row.m_next.paddingLeft = lengthOf(value); };
        words["clpadb"]
            = [](RowDefinition& row, std::int32_t value) { row.m_next.paddingBottom = lengthOf(value); };
        words["clpadr"]
            = [](RowDefinition& row, std::int32_t value) { row.m_next.paddingRight = lengthOf(value); };
    }

    static const Table& all()
    {
        static const Table words = [] {
            Table table;
            addRowWords(table);
            addCellWords(table);
            return table;
        }();
        return words;
    }
};

bool RowDefinition::takeWord(std::string_view name, std::int32_t value)
{
    const auto word = Words::all().find(name);
    if (word == Words::all().end())
        return borderWord(name, value);
    word->second(*this, value);
    return true;
}

void RowDefinition::begin()
{
    m_cells.clear(); // Keeps its room: a table has rows of one kind.
    m_next = {};
    m_borderSide = 0;
    m_isLast = false;
    m_left = m_minimumHeight = m_gap = 0;
    m_paddingTop = m_paddingLeft = m_paddingBottom = m_paddingRight = std::nullopt;
}

// A cell that is merged into the one before it makes that one wider.
void RowDefinition::endCell(std::int32_t right)
{
    constexpr std::size_t MostCells = 1000;
    if (m_cells.size() >= MostCells)
        return;
    m_next.left = m_cells.empty() ? m_left : m_cells.back().right;
    m_next.right = right;
    m_next.isMergedAcross = m_next.isMergedAcross && !m_cells.empty();
    if (m_next.isMergedAcross)
        ++m_cells[m_leading].span;
    else
        m_leading = m_cells.size();
    m_cells.push_back(std::exchange(m_next, {}));
    m_borderSide = 0;
}

// Cells have one kind of border, on some of their sides.
bool RowDefinition::borderWord(std::string_view name, std::int32_t value)
{
    if (name == "brdrw") {
        if (m_borderSide != 0 && value > 0) {
            m_next.borderWidth = std::min(value, 2000);
            m_next.borderSides |= m_borderSide;
        }
    } else if (name == "brdrcf") {
        if (m_borderSide != 0)
            m_next.borderColor = value;
    } else if (name.starts_with("clbrdr") || name.starts_with("trbrdr")) {
        m_borderSide = name[0] == 'c' ? sideOf(name.back()) : std::uint8_t { 0 };
    } else if (name == "brdrnone" || name == "brdrnil" || name == "brdrtbl") {
        m_borderSide = 0;
    } else {
        return false;
    }
    return true;
}

bool RowDefinition::isCovered(std::uint32_t column) const
{
    return column < m_cells.size() && (m_cells[column].isMergedAcross || m_cells[column].isMergedDown);
}

std::uint32_t RowDefinition::columnsUntil(std::uint32_t column) const
{
    return column + (column < m_cells.size() ? m_cells[column].span : 1);
}

CellPadding RowDefinition::paddingOf(const CellDefinition& cell) const
{
    const auto pick = [](const auto& own, const auto& row, std::int32_t other) {
        return points(own.value_or(row.value_or(other)));
    };
    return { pick(cell.paddingTop, m_paddingTop, 0), pick(cell.paddingLeft, m_paddingLeft, m_gap),
        pick(cell.paddingBottom, m_paddingBottom, 0), pick(cell.paddingRight, m_paddingRight, m_gap) };
}

void RowDefinition::style(TableCell& cell, const ColorTable& colors) const
{
    if (cell.column >= m_cells.size())
        return;
    const CellDefinition& definition = m_cells[cell.column];
    cell.columnSpan = definition.span;
    if (!definition.hasNoWidth)
        cell.width = points(m_cells[cell.column + definition.span - 1].right - definition.left);
    cell.minimumHeight = points(std::max(m_minimumHeight, definition.minimumHeight));
    cell.background = colors.color(definition.background);
    cell.borderWidth = points(definition.borderWidth);
    if (definition.borderSides != 0)
        cell.borderSides = definition.borderSides;
    cell.borderColor = colors.color(definition.borderColor);
    cell.alignment = definition.alignment;
    cell.padding = paddingOf(definition);
}

} // namespace caddis::rtf
