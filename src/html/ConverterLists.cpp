// Lists and tables.

#include "html/Converter.h"

#include "text/NumericValues.h"

#include <algorithm>

namespace caddis::html {

using css::Keyword;

namespace {

constexpr std::int32_t LargestItem = 1'000'000'000;

// "{disc}" and its like; what numbers get a full stop, as in a browser.
String markerFormat(const css::ComputedStyle& style)
{
    if (!style.listMarker.empty())
        return String(css::trimmed(css::unescaped(style.listMarker)));
    const bool isNumber = style.listStyle >= Keyword::Decimal && style.listStyle <= Keyword::LowerGreek;
    MutableString format;
    format.append(u'{').append(nameOf(style.listStyle)).append(isNumber ? u"}." : u"}");
    return std::move(format).take();
}

std::int32_t numberIn(std::u16string_view text, std::int32_t otherwise)
{
    return text.empty() ? otherwise : std::clamp(intValue(text), -LargestItem, LargestItem);
}

} // namespace

void Converter::openList(Frame& frame)
{
    frame.item = NoFrame;
    if (m_lists.size() == DeepestList)
        return;
    frame.opensList = true;
    TextList list { markerFormat(*frame.style), numberIn(attribute(frame, u"start"), 1) };
    m_lists.push_back({ list, list.startingItemNumber, std::nullopt });
    if (frame.style->listStyle != Keyword::None || !frame.style->listMarker.empty())
        m_lists.back().number = m_builder.addList(list);
}

void Converter::openItem(Frame& frame, std::size_t index)
{
    frame.item = index;
    frame.hasMarker = !isInList() || frame.style->listStyle == Keyword::None;
    if (m_lists.empty())
        return;
    OpenList& list = m_lists.back();
    frame.itemNumber = numberIn(attribute(frame, u"value"), list.nextItem);
    list.nextItem = std::min(frame.itemNumber, LargestItem) + 1;
}

// The first paragraph of an item begins with "TAB marker TAB".
void Converter::markItem()
{
    const std::size_t item = m_frames.back().item;
    if (item == NoFrame || std::exchange(m_frames[item].hasMarker, true))
        return;
    MutableString marker;
    marker.append(u'\t').append(m_lists.back().list.marker(m_frames[item].itemNumber)).append(u'\t');
    m_markers.push_back({ m_flushed, std::move(marker).take() });
}

void Converter::openTable(Frame& frame)
{
    if (m_tables.size() == DeepestTable
        || (!m_tables.empty() && m_cells.size() == m_tables.back().outerCells))
        return;
    frame.opensTable = true;
    m_tables.push_back({ m_builder.addTable({}), m_cells.size(), 0, 0, 0, false, {} });
}

void Converter::closeTable()
{
    const OpenTable& table = m_tables.back();
    m_builder.setColumns(table.number, table.columns);
    m_tables.pop_back();
}

void Converter::openRow()
{
    if (m_tables.empty() || m_cells.size() != m_tables.back().outerCells)
        return;
    OpenTable& table = m_tables.back();
    table.row += table.hasRow ? 1 : 0;
    table.column = 0;
    table.hasRow = true;
}

void Converter::openCell(Frame& frame)
{
    constexpr std::uint32_t MostColumns = 1000;
    constexpr std::int32_t MostRows = 65534; // Of a rowspan (HTML Standard, section 4.9.11).
    if (m_tables.empty() || m_cells.size() != m_tables.back().outerCells)
        return;
    OpenTable& table = m_tables.back();
    if (!table.hasRow)
        openRow();
    while (table.column < table.freeFromRow.size() && table.freeFromRow[table.column] > table.row)
        ++table.column;
    if (table.column >= MostColumns)
        return;
    const css::ComputedStyle& style = *frame.style;
    TableCell cell;
    cell.table = table.number;
    cell.row = table.row;
    cell.column = table.column;
    const auto columns = static_cast<std::uint32_t>(
        std::clamp(numberIn(attribute(frame, u"colspan"), 1), 1, static_cast<std::int32_t>(MostColumns)));
    cell.columnSpan = std::min(columns, MostColumns - table.column);
    cell.rowSpan
        = static_cast<std::uint32_t>(std::clamp(numberIn(attribute(frame, u"rowspan"), 1), 1, MostRows));
    cell.width = std::max(style.width.value_or(0), 0.0);
    cell.minimumHeight = std::max(style.height.value_or(0), 0.0);
    cell.alignment = style.cellAlignment;
    cell.padding = CellPadding::ofAllSides(std::max(style.padding, 0.0));
    cell.borderWidth = std::max(style.borderWidth, 0.0);
    cell.borderColor = style.borderColor;
    cell.background = style.background;
    m_cells.push_back(cell);
    frame.opensCell = true;
    table.column += cell.columnSpan;
    table.columns = std::max(table.columns, table.column);
    if (table.freeFromRow.size() < table.column)
        table.freeFromRow.resize(table.column);
    if (cell.rowSpan > 1)
        std::fill_n(table.freeFromRow.begin() + cell.column, cell.columnSpan, cell.row + cell.rowSpan);
}

} // namespace caddis::html
