#include "platform/documents/PDFSelection.h"

#include "platform/base/Exception.h"
#include "platform/base/LeftOut.h"
#include "platform/richtext/AttributedStringBuilder.h"
#include "platform/richtext/RTFD.h"

namespace caddis {

namespace {

std::optional<PDFStyledText> textOfPage(const PDFDocument& document, std::size_t index, PDFDeadline deadline)
{
    try {
        const auto page = document.pageAtIndex(index);
        return page ? page->styledString(deadline) : std::nullopt;
    } catch (const Exception&) {
        return std::nullopt; // What a page throws only means that it has no text.
    }
}

CharacterStyle styleOf(const PDFTextStyle& style)
{
    CharacterStyle letters;
    if (!style.fontName.isEmpty())
        letters.font.name = style.fontName;
    if (style.size > 0)
        letters.font.size = style.size;
    letters.font.bold = style.bold;
    letters.font.italic = style.italic;
    return letters;
}

void append(AttributedStringBuilder& builder, const PDFStyledText& page)
{
    CharacterStyle style;
    std::size_t begin = 0;
    for (const PDFTextRun& run : page.runs) {
        style = styleOf(run.style);
        builder.append(page.string.view().substr(begin, run.length), style);
        begin += run.length;
    }
    builder.append(u"\n", style);
}

} // namespace

std::optional<PDFSelection> PDFSelection::selectionForEntireDocument(
    const PDFDocument& document, PDFDeadline deadline)
{
    const std::size_t pages = document.pageCount();
    if (pages == 0)
        return std::nullopt;
    AttributedStringBuilder builder;
    for (std::size_t index = 0; index < pages; ++index) {
        if (deadline && std::chrono::steady_clock::now() >= *deadline) {
            noteLeftOut(u"pages that were not read in time");
            break;
        }
        const auto page = textOfPage(document, index, deadline);
        if (page && !page->string.isEmpty())
            append(builder, *page);
    }
    PDFSelection selection;
    selection.m_text = std::move(builder).finish();
    return selection;
}

std::optional<Data> PDFSelection::rtfdData() const { return RTFDFromString(m_text, {}); }

} // namespace caddis
