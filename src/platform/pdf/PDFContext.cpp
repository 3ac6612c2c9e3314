#include "platform/pdf/PDFContext.h"

#include "platform/pdf/PDFEngine.h"
#include "platform/pdf/PDFModule.h"

#include <cstdio>

namespace caddis {

PDFContext::PDFContext(std::unique_ptr<pdf::Writer> writer)
    : m_writer(std::move(writer))
{
}

PDFContext::~PDFContext() = default;

std::unique_ptr<PDFContext> PDFContext::create(Rect mediaBox, const Dictionary& attributes)
{
    auto* const makeWriter = pdf::writerModule().entry<pdf::MakeWriter>("caddisMakePDFWriter");
    std::unique_ptr<pdf::Writer> writer(makeWriter ? makeWriter(mediaBox, attributes) : nullptr);
    return writer ? std::unique_ptr<PDFContext>(new PDFContext(std::move(writer))) : nullptr;
}

void PDFContext::beginPage(const PDFPageInfo& info) { m_writer->beginPage(info.mediaBox, info.annotations); }

void PDFContext::endPage() { m_writer->endPage(); }

void PDFContext::saveGState() { m_writer->appendContent("q\n"); }

void PDFContext::restoreGState() { m_writer->appendContent("Q\n"); }

void PDFContext::concatCTM(const AffineTransform& transform)
{
    char operators[256];
    const int length = std::snprintf(operators, sizeof operators, "%.9g %.9g %.9g %.9g %.9g %.9g cm\n",
        transform[0], transform[1], transform[2], transform[3], transform[4], transform[5]);
    m_writer->appendContent({ operators, static_cast<std::size_t>(length) });
}

void PDFContext::drawPDFPage(const PDFPage& page)
{
    if (page.hasPageRef())
        m_writer->drawPage(*page.m_document, page.m_index);
}

std::optional<Data> PDFContext::close() { return m_writer->close(); }

} // namespace caddis
