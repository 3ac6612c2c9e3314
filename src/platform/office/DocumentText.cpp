#include "platform/office/DocumentText.h"
#include "platform/base/LeftOut.h"

#include <algorithm>

namespace caddis::office {

namespace {

constexpr std::size_t MostAttachedBytes = 128ULL << 20;
constexpr std::size_t DeepestTable = 32; // Deeper ones are text of the cell around them.
constexpr std::uint32_t MostColumns = 16384;

} // namespace

void DocumentText::append(std::u16string_view units, const CharacterStyle& style)
{
    m_story->builder.append(units, style);
}

void DocumentText::appendAttachment(Attachment attachment, const CharacterStyle& style)
{
    const std::size_t size = attachment.file.contents.size();
    if (size > MostAttachedBytes - m_attachedBytes)
        return noteLeftOut(u"attachments beyond 512 MiB");
    m_attachedBytes += size;
    m_story->builder.appendAttachment(std::move(attachment), style);
}

void DocumentText::endParagraph(ParagraphStyle style, const CharacterStyle& lineBreak)
{
    for (const OpenTable& table : m_story->tables)
        style.cells.push_back(table.cell);
    m_story->builder.append(u"\n", lineBreak);
    m_story->builder.endParagraphs(style);
    m_story->paragraph = m_story->builder.length();
}

std::vector<std::uint32_t> DocumentText::lists(const Numbering& numbering, const String& list, int level)
{
    std::vector<std::uint32_t> result;
    for (int step = 0; step <= std::clamp(level, 0, LastListLevel); ++step) {
        const auto [entry, isNew] = m_story->lists.try_emplace({ list, step }, 0U);
        if (isNew)
            entry->second = m_story->builder.addList(numbering.textList(list, step));
        result.push_back(entry->second);
    }
    return result;
}

void DocumentText::beginTable()
{
    if (m_story->tables.size() >= DeepestTable) {
        ++m_story->uncountedTables;
        return;
    }
    OpenTable table;
    table.cell.table = m_story->builder.addTable({});
    m_story->tables.push_back(table);
}

void DocumentText::endTable()
{
    if (m_story->uncountedTables > 0) {
        --m_story->uncountedTables;
    } else if (!m_story->tables.empty()) {
        const OpenTable& table = m_story->tables.back();
        m_story->builder.setColumns(table.cell.table, table.columns);
        m_story->tables.pop_back();
    }
}

void DocumentText::endRow()
{
    if (m_story->tables.empty() || m_story->uncountedTables > 0)
        return;
    ++m_story->tables.back().cell.row;
    m_story->tables.back().cell.column = 0;
}

void DocumentText::beginCell()
{
    if (m_story->tables.empty() || m_story->uncountedTables > 0)
        return;
    OpenTable& table = m_story->tables.back();
    TableCell cell;
    cell.table = table.cell.table;
    cell.row = table.cell.row;
    cell.column = table.cell.column;
    table.cell = cell;
    table.cellBegin = m_story->builder.length();
    table.isInCell = true;
}

TableCell* DocumentText::cell()
{
    if (m_story->tables.empty() || !m_story->tables.back().isInCell || m_story->uncountedTables > 0)
        return nullptr;
    return &m_story->tables.back().cell;
}

void DocumentText::endCell(std::uint32_t columns)
{
    if (!cell())
        return;
    OpenTable& table = m_story->tables.back();
    if (!isAtParagraphStart() || m_story->builder.length() == table.cellBegin)
        endParagraph({}, {});
    table.isInCell = false;
    skipColumns(columns);
}

void DocumentText::skipColumns(std::uint32_t count)
{
    if (m_story->tables.empty() || m_story->uncountedTables > 0)
        return;
    OpenTable& table = m_story->tables.back();
    table.cell.column = std::min(table.cell.column + std::min(count, MostColumns), MostColumns);
    table.columns = std::max(table.columns, table.cell.column);
}

void DocumentText::beginNote() { m_story = &m_notes; }

void DocumentText::endNote()
{
    if (!isInNote())
        return;
    while (!m_notes.tables.empty())
        endTable();
    if (!isAtParagraphStart())
        endParagraph({}, {});
    m_story = &m_body;
}

AttributedString DocumentText::finish(Dictionary attributes) &&
{
    endNote();
    while (!m_body.tables.empty())
        endTable();
    if (m_notes.builder.length() > 0) {
        if (!isAtParagraphStart())
            endParagraph({}, {});
        m_body.builder.append(std::move(m_notes.builder).finish());
    }
    AttributedString text = std::move(m_body.builder).finish();
    text.documentAttributes = std::move(attributes);
    return text;
}

} // namespace caddis::office
