// Rows and cells as they are written: a row's definition stands before its first cell, a nested row's behind
// its last one.

#include "platform/richtext/RTFEscapes.h"
#include "platform/richtext/RTFWriter.h"

#include <algorithm>
#include <cmath>

namespace caddis::rtf {

namespace {

constexpr long TableWidth = 8640; // Twips: six inches, parted evenly where cells have no width.
constexpr std::size_t MostCovered = 64; // Columns of one cell, or between two.

bool isSameCell(const TableCell& left, const TableCell& right)
{
    return left.table == right.table && left.row == right.row && left.column == right.column;
}

} // namespace

std::vector<TableCell> Writer::cellsOfRow(std::size_t location, const TableCell& cell) const
{
    const auto runs = m_text.paragraphRuns();
    std::vector<TableCell> cells;
    for (std::size_t run = m_paragraphRun; run < runs.size(); ++run) {
        const auto& style = m_text.paragraphStyles()[runs[run].style];
        if (runs[run].location < location && run != m_paragraphRun)
            continue;
        if (style.cells.empty() || style.cells[0].table != cell.table || style.cells[0].row != cell.row)
            break;
        if (cells.empty() || cells.back().column != style.cells[0].column)
            cells.push_back(style.cells[0]);
        else if (cells.back().width == 0)
            cells.back() = style.cells[0]; // Paragraphs of inner tables don't know the outer cell's looks.
    }
    return cells;
}

// Columns that belong to a cell of the row above, before the cell that stands next to `column`.
std::size_t Writer::coveredColumns(std::size_t column, const TableCell& cell)
{
    const std::size_t count = cell.column > column ? cell.column - column : 0;
    return count <= MostCovered ? count : 0;
}

std::size_t Writer::columnsOf(const TableCell& cell)
{
    return std::clamp<std::size_t>(cell.columnSpan, 1, MostCovered);
}

void Writer::beginRow(std::size_t location, const TableCell& cell)
{
    rowDefinition(cellsOfRow(location, cell));
    m_paragraph = nullptr;
    if (const std::size_t covered = coveredColumns(0, cell)) {
        m_out += "\\pard\\intbl\\itap1";
        endCoveredCells(covered);
    }
}

void Writer::endCoveredCells(std::size_t count)
{
    for (std::size_t cell = 0; cell < count; ++cell)
        m_out += "\\cell ";
}

// A cell of several columns is followed by those that it is merged with; where a cell of the row above
// reaches down stands one that is merged with that.
void Writer::rowDefinition(const std::vector<TableCell>& cells)
{
    m_out += "\\itap1\\trowd \\taflags1 \\trgaph108\\trleft-108\n";
    std::size_t columns = 0;
    for (const TableCell& cell : cells)
        columns += coveredColumns(columns, cell) + columnsOf(cell);
    const long share = TableWidth / static_cast<long>(std::max<std::size_t>(columns, 1));
    long right = 0;
    std::size_t column = 0;
    for (const TableCell& cell : cells) {
        for (std::size_t covered = coveredColumns(column, cell); covered > 0; --covered) {
            appendWord(m_out, "clvmrg\\clftsWidth1\\cellx", right += share);
            m_out += '\n';
        }
        cellDefinition(cell, right, share);
        column = cell.column + columnsOf(cell);
    }
}

// Moves `right` to the cell's end.
void Writer::cellDefinition(const TableCell& cell, long& right, long share)
{
    const auto span = static_cast<long>(columnsOf(cell));
    const bool hasWidth = std::abs(cell.width) > 0 && std::abs(cell.width) < 1e5;
    const long left = right;
    const long width = hasWidth ? std::lround(cell.width * 20) : share * span;
    if (cell.rowSpan > 1)
        m_out += "\\clvmgf";
    if (span > 1)
        m_out += "\\clmgf";
    if (cell.background)
        appendWord(m_out, "clcbpat", static_cast<long>(m_tables.color(cell.background)));
    for (const std::string_view side : { "\\clbrdrt", "\\clbrdrl", "\\clbrdrb", "\\clbrdrr" }) {
        if (cell.borderWidth <= 0 || cell.borderWidth >= 100)
            break;
        m_out += side;
        m_out += "\\brdrs";
        appendWord(m_out, "brdrw", std::lround(cell.borderWidth * 20));
        appendWord(m_out, "brdrcf", static_cast<long>(m_tables.color(cell.borderColor)));
        m_out += ' ';
    }
    for (long part = 1; part <= span; ++part) {
        m_out += part > 1 ? "\\clmrg" : "";
        m_out += hasWidth ? "" : "\\clftsWidth1";
        appendWord(m_out, "cellx", right = left + width * part / span);
        m_out += '\n';
    }
}

// Ends the cells that the next paragraph is not in, the innermost first. An outer cell that ends together
// with a table in it needs a paragraph of its own to end with.
void Writer::endCells(const ParagraphStyle& style, const ParagraphStyle* next)
{
    setLink({});
    const auto& cells = style.cells;
    for (std::size_t level = cells.size(); level-- > 0;) {
        const bool hasNext = next && level < next->cells.size();
        bool goesOn = hasNext;
        for (std::size_t outer = 0; goesOn && outer <= level; ++outer)
            goesOn = isSameCell(cells[outer], next->cells[outer]);
        if (goesOn)
            break;
        if (level + 1 < cells.size()) {
            m_out += "\\pard\\intbl";
            appendWord(m_out, "itap", static_cast<long>(level + 1));
            m_paragraph = nullptr;
        }
        m_out += level > 0 ? "\\nestcell " : "\\cell ";
        bool rowGoesOn = hasNext && next->cells[level].table == cells[level].table
            && next->cells[level].row == cells[level].row;
        for (std::size_t outer = 0; rowGoesOn && outer < level; ++outer)
            rowGoesOn = isSameCell(cells[outer], next->cells[outer]);
        if (level == 0)
            endCoveredCells(columnsOf(cells[0]) - 1
                + (rowGoesOn ? coveredColumns(cells[0].column + columnsOf(cells[0]), next->cells[0]) : 0));
        if (rowGoesOn)
            continue;
        m_out += level > 0 ? "{\\*\\nesttableprops\\trowd\\cellx2880\\nestrow}" : "\\row\n";
    }
}

} // namespace caddis::rtf
