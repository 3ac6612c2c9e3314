// Tables of a document in Word's markup. Cells that are merged with the one above stay cells, without text.

#include "platform/office/Values.h"
#include "platform/office/WordReader.h"

#include <algorithm>

namespace caddis::office {

namespace {

constexpr double TwipsPerPoint = 20;
constexpr double LineUnitsPerPoint = 8; // Of borders.

} // namespace

void WordReader::startTable(const XMLAttributes&)
{
    m_text.beginTable();
    m_cellBorders.push_back(0);
}

void WordReader::endTable()
{
    m_text.endTable();
    if (!m_cellBorders.empty())
        m_cellBorders.pop_back();
}

void WordReader::endRow() { m_text.endRow(); }

void WordReader::startCell(const XMLAttributes&)
{
    m_text.beginCell();
    if (TableCell* cell = m_text.cell(); cell && !m_cellBorders.empty())
        cell->borderWidth = m_cellBorders.back();
}

void WordReader::endCell()
{
    const TableCell* cell = m_text.cell();
    m_text.endCell(cell ? cell->columnSpan : 1);
}

void WordReader::columnSpan(const XMLAttributes& attributes)
{
    constexpr std::int32_t MostColumns = 1024;
    if (TableCell* cell = m_text.cell())
        cell->columnSpan = static_cast<std::uint32_t>(
            std::clamp(integerAtFront(attributes.utf8("w:val").value_or("")), 1, MostColumns));
}

void WordReader::cellWidth(const XMLAttributes& attributes)
{
    TableCell* cell = m_text.cell();
    if (cell && attributes.utf8("w:type").value_or("dxa") == "dxa")
        cell->width = std::max(0.0, numberAtFront(attributes.utf8("w:w").value_or("")) / TwipsPerPoint);
}

void WordReader::tableStyle(const XMLAttributes& attributes)
{
    const Style& style = m_styles.resolved(attributes.value("w:val").value_or(String()));
    if (style.cellBorder && !m_cellBorders.empty())
        m_cellBorders.back() = *style.cellBorder;
}

void WordReader::startCellBorders(const XMLAttributes&)
{
    m_borders = Borders::Cell;
    if (TableCell* cell = m_text.cell())
        cell->borderWidth = 0;
}

void WordReader::startTableBorders(const XMLAttributes&) { m_borders = Borders::Table; }

void WordReader::endBorders() { m_borders = Borders::None; }

// Any side that is drawn stands for all four.
void WordReader::border(const XMLAttributes& attributes)
{
    const std::string_view kind = attributes.utf8("w:val").value_or("single");
    const bool isDrawn = kind != "nil" && kind != "none";
    const double width = isDrawn
        ? std::clamp(numberAtFront(attributes.utf8("w:sz").value_or("4")) / LineUnitsPerPoint, 0.25, 12.0)
        : 0;
    if (TableCell* cell = m_borders == Borders::Cell && isDrawn ? m_text.cell() : nullptr) {
        cell->borderWidth = width;
        if (const auto color = colorOfHex(attributes.utf8("w:color").value_or("")))
            cell->borderColor = *color;
    }
    if (m_borders == Borders::Table && m_style)
        m_style->cellBorder = width;
    else if (m_borders == Borders::Table && !m_cellBorders.empty())
        m_cellBorders.back() = width;
}

} // namespace caddis::office
