// Tables as they are read. What a row's cells look like may be said behind its text, so its paragraphs get
// that at the row's end.

#include "platform/richtext/RTFReader.h"

#include <algorithm>

namespace caddis::rtf {

namespace {

constexpr std::int32_t DeepestTable = 32;
constexpr std::size_t MostCells = 200000; // Of a document: what comes then is text without a table.

} // namespace

bool Reader::rowWord(std::string_view name, Number number)
{
    if (name == "cell" || name == "nestcell") {
        endCell(name == "nestcell");
        return true;
    }
    if (name == "row" || name == "nestrow") {
        endRow(name == "nestrow");
        return true;
    }
    const auto level = static_cast<std::size_t>(std::clamp(m_state.paragraph->tableLevel, 1, DeepestTable));
    if (m_rows.size() < level)
        m_rows.resize(level);
    return m_rows[level - 1].takeWord(name, number.value_or(0));
}

void Reader::openTables()
{
    const std::int32_t deepest = m_cellCount < MostCells ? DeepestTable : 0;
    const auto level = static_cast<std::size_t>(std::clamp(m_state.paragraph->tableLevel, 0, deepest));
    closeTables(level);
    for (; m_openTables.size() < level; ++m_cellCount)
        m_openTables.push_back({ m_builder.addTable({}), m_builder.paragraphsEnd() });
}

// Those deeper than `level`.
void Reader::closeTables(std::size_t level)
{
    while (m_openTables.size() > level) {
        styleRow();
        endTallCells(nullptr);
        m_builder.setColumns(m_openTables.back().table, m_openTables.back().columns);
        m_openTables.pop_back();
    }
}

// Every nested table is followed by a paragraph of the cell around it. Where that is empty and ends the cell,
// it is there for the format's sake.
void Reader::endCell(bool isNested)
{
    if (m_state.destination != Destination::Body)
        return;
    if (const bool isRightLevel
        = isNested ? m_state.paragraph->tableLevel >= 1 : m_state.paragraph->tableLevel == 1;
        !isRightLevel)
        editParagraph().tableLevel = 1;
    const auto level = static_cast<std::size_t>(std::min(m_state.paragraph->tableLevel, DeepestTable));
    if (m_builder.length() != m_innerEnd || m_innerLevel != level + 1)
        endParagraph();
    openTables();
    ++m_cellCount;
    if (!m_openTables.empty())
        ++m_openTables.back().column;
}

void Reader::endRow(bool isNested)
{
    if (m_state.destination != Destination::Body || m_openTables.empty())
        return;
    if (!isNested)
        closeTables(1);
    styleRow();
    OpenTable& table = m_openTables.back();
    ++table.row;
    table.column = 0;
    m_innerEnd = m_builder.length();
    m_innerLevel = m_openTables.size();
    if (m_innerLevel <= m_rows.size() && m_rows[m_innerLevel - 1].isLast())
        closeTables(m_innerLevel - 1);
}

// What was said of the cells of the innermost table's row goes to their paragraphs.
void Reader::styleRow()
{
    const std::size_t level = m_openTables.size() - 1;
    OpenTable& table = m_openTables.back();
    const std::size_t begin = std::exchange(table.rowBegin, m_builder.paragraphsEnd());
    if (level >= m_rows.size() || begin == table.rowBegin)
        return;
    const RowDefinition& row = m_rows[level];
    endTallCells(&row);
    m_builder.restyleParagraphs({ begin, table.rowBegin - begin }, [&](ParagraphStyle& style, Range range) {
        if (style.cells.size() <= level || style.cells[level].table != table.table)
            return;
        TableCell& cell = style.cells[level];
        row.style(cell, m_colors);
        table.columns = std::max(table.columns, row.columnsUntil(cell.column));
        if (range.length == 1 && style.cells.size() == level + 1 && row.isCovered(cell.column))
            m_coveredBreaks.push_back({ range.location, {}, true });
        if (row.isTall(cell.column))
            noteTallCell(cell.column, range);
    });
}

void Reader::noteTallCell(std::uint32_t column, Range text)
{
    constexpr std::size_t MostTallCells = 64; // Each row looks at all of them.
    OpenTable& table = m_openTables.back();
    if (!table.tall.empty() && table.tall.back().row == table.row && table.tall.back().column == column)
        table.tall.back().text.length = text.end() - table.tall.back().text.location;
    else if (table.tall.size() < MostTallCells)
        table.tall.push_back({ column, table.row, text });
}

// Those that don't reach into the row below, or where the table ends: none does.
void Reader::endTallCells(const RowDefinition* below)
{
    const std::size_t level = m_openTables.size() - 1;
    OpenTable& table = m_openTables.back();
    std::erase_if(table.tall, [&](const TallCell& tall) {
        if (below && below->isMergedDown(tall.column))
            return false;
        m_builder.restyleParagraphs(tall.text, [&](ParagraphStyle& style, Range) {
            if (level < style.cells.size())
                style.cells[level].rowSpan = std::max(table.row - tall.row, 1U);
        });
        return true;
    });
}

} // namespace caddis::rtf
