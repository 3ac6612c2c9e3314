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
constexpr std::size_t MostCoveredInAll = 200000; // Each is some thirty bytes, and may come of none.

long twips(double points) { return std::lround(std::clamp(points, 0.0, 1000.0) * 20); }

bool isSameRow(const TableCell& left, const TableCell& right)
{
    return left.table == right.table && left.row == right.row;
}

// Columns that belong to a cell of the row above, before the cell that stands next to `column`.
std::size_t coveredColumns(std::size_t column, const TableCell& cell, std::size_t most)
{
    const std::size_t count = cell.column > column ? cell.column - column : 0;
    return count <= most ? count : 0;
}

std::size_t columnsOf(const TableCell& cell, std::size_t most)
{
    return std::clamp<std::size_t>(cell.columnSpan, 1, std::max<std::size_t>(most, 1));
}

// In twips, of a cell that has one.
std::optional<long> widthOf(const TableCell& cell)
{
    const bool hasWidth = std::abs(cell.width) > 0 && std::abs(cell.width) < 1e5;
    return hasWidth ? std::optional(std::lround(cell.width * 20)) : std::nullopt;
}

// Notes which columns of the rows below are the cell's.
void cover(std::vector<TableCell>& tall, const TableCell& cell, std::size_t most)
{
    constexpr std::size_t MostColumns = 1000;
    const std::size_t end = cell.column + columnsOf(cell, most);
    if (cell.rowSpan <= 1 || end > MostColumns)
        return;
    tall.resize(std::max(tall.size(), end));
    std::fill(tall.begin() + cell.column, tall.begin() + static_cast<std::ptrdiff_t>(end), cell);
}

// The cell of a row above that reaches down to that place; null pointer where there is none.
const TableCell* tallCellAt(const std::vector<TableCell>& tall, std::size_t column, std::uint32_t row)
{
    const bool isReached
        = column < tall.size() && row > tall[column].row && row - tall[column].row < tall[column].rowSpan;
    return isReached ? &tall[column] : nullptr;
}

std::size_t columnsOf(const std::vector<TableCell>& cells, std::size_t most)
{
    std::size_t columns = 0;
    for (const TableCell& cell : cells)
        columns += coveredColumns(columns, cell, most) + columnsOf(cell, most);
    return std::max<std::size_t>(columns, 1);
}

} // namespace

std::size_t commonCells(const std::vector<TableCell>& left, const std::vector<TableCell>& right)
{
    std::size_t count = 0;
    while (count < std::min(left.size(), right.size()) && isSameRow(left[count], right[count])
        && left[count].column == right[count].column)
        ++count;
    return count;
}

std::vector<TableCell> Writer::cellsOfRow(std::size_t level, const TableCell& cell) const
{
    const auto runs = m_text.paragraphRuns();
    std::vector<TableCell> cells;
    for (std::size_t run = m_paragraphRun; run < runs.size(); ++run) {
        const auto& style = m_text.paragraphStyles()[runs[run].style];
        if (style.cells.size() <= level || !isSameRow(style.cells[level], cell))
            break;
        if (cells.empty() || cells.back().column != style.cells[level].column)
            cells.push_back(style.cells[level]);
    }
    return cells;
}

// The rows that the paragraph before was not in.
void Writer::beginRows(const ParagraphStyle& style)
{
    const std::size_t common = commonCells(m_cells, style.cells);
    for (std::size_t level = common; level < style.cells.size(); ++level) {
        if (level > common || level >= m_cells.size() || !isSameRow(m_cells[level], style.cells[level]))
            beginRow(level, style);
    }
}

void Writer::beginRow(std::size_t level, const ParagraphStyle& style)
{
    const TableCell& cell = style.cells[level];
    OpenRow row { .cells = cellsOfRow(level, cell) };
    row.mostCovered = m_coveredColumns < MostCoveredInAll ? MostCovered : 0;
    const bool isSameTable = level < m_rows.size() && m_rows[level].cells.front().table == cell.table;
    if (isSameTable)
        row.tall = std::move(m_rows[level].tall);
    m_rows.resize(level);
    long width = TableWidth;
    if (level > 0) {
        const TableCell& outer = style.cells[level - 1];
        width = widthOf(outer).value_or(
            m_rows.back().share * static_cast<long>(columnsOf(outer, m_rows.back().mostCovered)));
    }
    const std::size_t columns = columnsOf(row.cells, row.mostCovered);
    while (row.coveredAtEnd < row.mostCovered && tallCellAt(row.tall, columns + row.coveredAtEnd, cell.row))
        ++row.coveredAtEnd;
    m_coveredColumns += columns + row.coveredAtEnd - row.cells.size();
    row.share = std::max(width / static_cast<long>(columns + row.coveredAtEnd), 1L);
    m_rows.push_back(std::move(row));
    if (level == 0) {
        m_out += "\\itap1\\trowd ";
        rowDefinition(level);
        m_paragraph = nullptr;
    }
    if (const std::size_t covered = coveredColumns(0, cell, m_rows[level].mostCovered)) {
        tableParagraph(level);
        endCoveredCells(level, covered);
    }
}

// A plain paragraph in the table at that level begins.
void Writer::tableParagraph(std::size_t level)
{
    m_out += "\\pard\\intbl";
    appendWord(m_out, "itap", static_cast<long>(level + 1));
    m_paragraph = nullptr;
}

void Writer::endCell(std::size_t level)
{
    m_out += level > 0 ? "\\nestcell{\\nonesttables\\par}" : "\\cell ";
}

void Writer::endCoveredCells(std::size_t level, std::size_t count)
{
    for (std::size_t cell = 0; cell < count; ++cell)
        endCell(level);
}

void Writer::endRow(std::size_t level, bool isLast)
{
    endCoveredCells(level, m_rows[level].coveredAtEnd);
    const std::string_view last = isLast ? "\\lastrow" : "";
    if (level == 0) {
        m_out.append(last).append("\\row\n");
    } else {
        m_out += "{\\*\\nesttableprops\\trowd ";
        rowDefinition(level);
        m_out.append(last).append("\\nestrow}{\\nonesttables\\par}\n");
    }
    OpenRow& row = m_rows[level];
    for (const TableCell& cell : row.cells)
        cover(row.tall, cell, row.mostCovered);
}

// A cell of several columns is followed by those that it is merged with; where a cell of the row above
// reaches down stands one that is merged with that.
void Writer::rowDefinition(std::size_t level)
{
    const OpenRow& row = m_rows[level];
    const CellPadding usual;
    appendWord(m_out, "taflags", 1);
    m_out += ' ';
    appendWord(m_out, "trgaph", twips(usual.left));
    long right = level > 0 ? 0 : -twips(usual.left);
    appendWord(m_out, "trleft", right);
    double height = 0;
    for (const TableCell& cell : row.cells)
        height = std::max(height, cell.minimumHeight);
    if (height > 0)
        appendWord(m_out, "trrh", twips(height));
    m_out += '\n';
    std::size_t column = 0;
    for (const TableCell& cell : row.cells) {
        for (std::size_t count = coveredColumns(column, cell, row.mostCovered); count > 0; --count)
            coveredDefinition(row, column++, right);
        cellDefinition(row, cell, right);
        column = cell.column + columnsOf(cell, row.mostCovered);
    }
    for (std::size_t count = row.coveredAtEnd; count > 0; --count)
        coveredDefinition(row, column++, right);
}

// The part has the sides of the whole cell, and is as wide.
void Writer::coveredDefinition(const OpenRow& row, std::size_t column, long& right)
{
    const TableCell* const tall = tallCellAt(row.tall, column, row.cells.front().row);
    const auto width = tall ? widthOf(*tall) : std::nullopt;
    m_out += "\\clvmrg";
    if (tall)
        cellBorders(*tall);
    if (!width)
        m_out += "\\clftsWidth1";
    right += width ? *width / static_cast<long>(columnsOf(*tall, MostCovered)) : row.share;
    appendWord(m_out, "cellx", right);
    m_out += '\n';
}

// Moves `right` to the cell's end.
void Writer::cellDefinition(const OpenRow& row, const TableCell& cell, long& right)
{
    const auto span = static_cast<long>(columnsOf(cell, row.mostCovered));
    const auto ownWidth = widthOf(cell);
    const long left = right;
    const long width = ownWidth.value_or(row.share * span);
    if (span > 1)
        m_out += "\\clmgf";
    cellLooks(cell);
    for (long part = 1; part <= span; ++part) {
        m_out += part > 1 ? "\\clmrg" : "";
        m_out += ownWidth ? "" : "\\clftsWidth1";
        appendWord(m_out, "cellx", right = left + width * part / span);
        m_out += '\n';
    }
}

void Writer::cellLooks(const TableCell& cell)
{
    if (cell.rowSpan > 1)
        m_out += "\\clvmgf";
    if (cell.alignment != VerticalAlignment::Top)
        m_out += cell.alignment == VerticalAlignment::Middle ? "\\clvertalc" : "\\clvertalb";
    if (cell.background)
        appendWord(m_out, "clcbpat", static_cast<long>(m_tables.color(cell.background)));
    cellBorders(cell);
    if (cell.padding == CellPadding())
        return;
    // As the reader has it: top and left are the wrong way round.
    for (const auto& [side, length] : { std::pair("t", cell.padding.left), { "l", cell.padding.top },
             { "b", cell.padding.bottom }, { "r", cell.padding.right } }) {
        appendWord(m_out, std::string("clpad") + side, twips(length));
        appendWord(m_out, std::string("clpadf") + side, 3);
    }
}

void Writer::cellBorders(const TableCell& cell)
{
    if (cell.borderWidth <= 0 || cell.borderWidth >= 100)
        return;
    for (const auto& [side, word] :
        { std::pair(TableCell::Top, "\\clbrdrt"), { TableCell::Left, "\\clbrdrl" },
            { TableCell::Bottom, "\\clbrdrb" }, { TableCell::Right, "\\clbrdrr" } }) {
        if ((cell.borderSides & side) == 0)
            continue;
        m_out += word;
        m_out += "\\brdrs";
        appendWord(m_out, "brdrw", twips(cell.borderWidth));
        appendWord(m_out, "brdrcf", static_cast<long>(m_tables.color(cell.borderColor)));
        m_out += ' ';
    }
}

// Ends the cells that the next paragraph is not in, the innermost first. An outer cell that ends together
// with a table in it needs a paragraph of its own to end with.
void Writer::endCells(const ParagraphStyle& style, const ParagraphStyle* next)
{
    setLink({});
    const auto& cells = style.cells;
    const std::size_t common = next ? commonCells(cells, next->cells) : 0;
    for (std::size_t level = cells.size(); level-- > common;) {
        if (level + 1 < cells.size())
            tableParagraph(level);
        endCell(level);
        const std::size_t most = m_rows[level].mostCovered;
        const std::size_t columns = columnsOf(cells[level], most);
        const bool isInTable = next && level == common && level < next->cells.size()
            && cells[level].table == next->cells[level].table;
        const bool rowGoesOn = isInTable && isSameRow(cells[level], next->cells[level]);
        const std::size_t end = cells[level].column + columns;
        endCoveredCells(level, columns - 1 + (rowGoesOn ? coveredColumns(end, next->cells[level], most) : 0));
        if (!rowGoesOn)
            endRow(level, !isInTable);
    }
}

} // namespace caddis::rtf
