#include "platform/pdf/PDFPage.h"

#include "platform/base/Format.h"
#include "platform/base/LeftOut.h"
#include "platform/pdf/PDFContext.h"
#include "platform/pdf/PDFEngine.h"

namespace caddis {

namespace {

constexpr std::uint64_t MostPixels = 100'000'000;

void noteCut(const pdf::Document& document)
{
    if (document.lastPageWasCut())
        noteLeftOut(u"the rest of a page that takes too much time or memory");
}

} // namespace

std::optional<String> PDFPage::string(PDFDeadline deadline) const
{
    auto text = m_document->text(m_index, deadline);
    noteCut(*m_document);
    return text;
}

std::optional<PDFStyledText> PDFPage::styledString(PDFDeadline deadline) const
{
    auto text = m_document->styledText(m_index, deadline);
    noteCut(*m_document);
    return text;
}

String PDFPage::label() const { return m_document->label(m_index); }

Rect PDFPage::boundsForBox(PDFDisplayBox box) const { return m_document->bounds(m_index, box); }

int PDFPage::rotation() const { return m_document->rotation(m_index); }

Size PDFPage::shownSize() const
{
    const Size box = boundsForBox(PDFDisplayBox::Crop).size();
    return rotation() % 180 == 0 ? box : Size { box.height, box.width };
}

std::vector<PDFAnnotation> PDFPage::annotations() const { return m_document->annotations(m_index); }

bool PDFPage::hasPageRef() const { return m_document->hasPage(m_index); }

String PDFPage::description() const
{
    return hasPageRef() ? format(u"PDFPage, label %@", label()) : String(u"PDFPage, missing");
}

std::optional<PDFRaster> PDFPage::raster(const PDFRasterRequest& request) const
{
    const std::uint64_t pixels = std::uint64_t { request.pixelsWide } * request.pixelsHigh;
    if (pixels == 0 || pixels > MostPixels)
        return std::nullopt;
    return m_document->draw(m_index, request);
}

void PDFPage::drawWithBox(PDFDisplayBox box, PDFContext& context) const
{
    const Rect bounds = boundsForBox(box);
    context.saveGState();
    context.concatCTM({ 1, 0, 0, 1, -bounds.x, -bounds.y });
    context.drawPDFPage(*this);
    context.restoreGState();
}

std::optional<Data> PDFPage::dataRepresentation() const
{
    const auto source = m_document->source();
    return source ? source->dataOfPage(m_index) : std::nullopt;
}

} // namespace caddis
