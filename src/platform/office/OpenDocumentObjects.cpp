// Tables, pictures and boxes of an OpenDocument text.

#include "platform/base/Paths.h"
#include "platform/office/OpenDocumentReader.h"
#include "platform/office/Values.h"

#include <algorithm>
#include <utility>

namespace caddis::office {

namespace {

// Cells that are said to come many times are one: those are empty ones at the end of a row.
constexpr std::int32_t MostColumns = 1024;

std::uint32_t count(const XMLAttributes& attributes, std::string_view name)
{
    return static_cast<std::uint32_t>(
        std::clamp(integerAtFront(attributes.utf8(name).value_or("1")), 1, MostColumns));
}

} // namespace

void OpenDocumentReader::startTable(const XMLAttributes&) { m_text.beginTable(); }

void OpenDocumentReader::endTable() { m_text.endTable(); }

void OpenDocumentReader::endRow() { m_text.endRow(); }

void OpenDocumentReader::startCell(const XMLAttributes& attributes)
{
    m_text.beginCell();
    TableCell* cell = m_text.cell();
    if (!cell)
        return;
    const auto style = m_cellStyles.find(attributes.value("table:style-name").value_or(String()));
    if (style != m_cellStyles.end()) {
        cell->background = style->second.background;
        cell->borderWidth = style->second.borderWidth;
        cell->borderColor = style->second.borderColor;
        cell->padding = style->second.padding;
    }
    cell->rowSpan = count(attributes, "table:number-rows-spanned");
    cell->columnSpan = count(attributes, "table:number-columns-spanned");
}

// The other columns that it covers have elements of their own.
void OpenDocumentReader::endCell() { m_text.endCell(1); }

void OpenDocumentReader::coveredCell(const XMLAttributes& attributes)
{
    m_text.skipColumns(count(attributes, "table:number-columns-repeated"));
}

void OpenDocumentReader::startFrame(const XMLAttributes& attributes)
{
    const auto length
        = [&](std::string_view name) { return lengthOf(attributes.utf8(name).value_or("")).value_or(0); };
    Frame frame;
    frame.size = { length("svg:width"), length("svg:height") };
    frame.name = attributes.value("draw:name").value_or(String());
    m_frames.push_back(std::move(frame));
}

void OpenDocumentReader::endFrame()
{
    if (!m_frames.empty())
        m_frames.pop_back();
}

void OpenDocumentReader::startImage(const XMLAttributes& attributes)
{
    const auto address = attributes.value("xlink:href");
    if (!address || !m_parts)
        return;
    std::string name = address->utf8();
    if (name.starts_with("./"))
        name.erase(0, 2);
    if (const Data* contents = partNamed(*m_parts, name))
        picture(*address, *contents);
}

void OpenDocumentReader::endImage()
{
    m_target = m_paragraphs.empty() ? TextTarget::None : TextTarget::Paragraph;
}

void OpenDocumentReader::startBinary(const XMLAttributes&)
{
    m_target = m_frames.empty() ? TextTarget::None : TextTarget::Picture;
}

// The first of a frame's pictures that is there; the others are the same in other forms.
void OpenDocumentReader::picture(const String& name, const Data& contents)
{
    if (m_frames.empty() || std::exchange(m_frames.back().hasPicture, true))
        return;
    const bool isOwnParagraph = m_paragraphs.empty();
    if (isOwnParagraph)
        startParagraph({});
    beginParagraph();
    m_paragraphs.back().endsWithBlank = false;
    const String last = safeMemberName(lastPathComponent(name));
    m_text.appendAttachment({ FileWrapper::file(last, contents), m_frames.back().size }, letterStyle());
    if (isOwnParagraph)
        endParagraph();
}

// The paragraph around a box is parted: what stands before it is one of its own.
void OpenDocumentReader::startBox(const XMLAttributes&)
{
    if (!m_paragraphs.empty() && m_paragraphs.back().hasBegun && !m_text.isAtParagraphStart())
        m_text.endParagraph(paragraphStyle(), letterStyle());
}

} // namespace caddis::office
