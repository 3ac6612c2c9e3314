#include "platform/pdf/PDFDocument.h"

#include "platform/pdf/PDFEngine.h"
#include "platform/pdf/PDFModule.h"

namespace caddis {

namespace {

// The header's place is the first kilobyte (PDF 32000-1, annex H.3). A reader that goes on without one
// searches all of the data for a document, be it gigabytes of something else.
bool hasHeader(const Data& data)
{
    constexpr std::size_t Searched = 1024;
    return data.chars().substr(0, Searched).find("PDF-") != std::string_view::npos;
}

} // namespace

std::optional<PDFDocument::Opened> PDFDocument::open(const Data& data)
{
    if (!hasHeader(data))
        return std::nullopt;
    auto* const openDocument = pdf::module().entry<pdf::OpenDocument>("caddisOpenPDFDocument");
    std::shared_ptr<const pdf::Document> document(openDocument ? openDocument(data) : nullptr);
    if (!document)
        return std::nullopt;
    return Opened { data, std::move(document) };
}

std::unique_ptr<PDFDocument> PDFDocument::initWithData(const Data& data)
{
    auto opened = open(data);
    return opened ? std::unique_ptr<PDFDocument>(new PDFDocument(std::move(*opened))) : nullptr;
}

bool PDFDocument::isLocked() const { return m_document->isLocked(); }

std::size_t PDFDocument::pageCount() const { return m_document->pageCount(); }

Dictionary PDFDocument::documentAttributes() const { return m_document->attributes(); }

std::vector<PDFOutlineItem> PDFDocument::outline() const { return m_document->outline(); }

std::optional<Data> PDFDocument::dataRepresentationWithPasswords(const PDFPasswords& passwords) const
{
    const auto source = m_document->source();
    return source ? source->dataWithPasswords(passwords) : std::nullopt;
}

std::optional<Data> PDFDocument::dataRepresentationWithImages(const PDFImageSettings& settings) const
{
    const auto source = m_document->source();
    return source ? source->dataWithImages(settings) : std::nullopt;
}

std::unique_ptr<PDFPage> PDFDocument::pageAtIndex(std::size_t index) const
{
    if (index >= pageCount())
        return nullptr;
    return pageClass()(m_document, index);
}

PDFDocument::PageClass* PDFDocument::pageClass() const { return makePage<PDFPage>; }

} // namespace caddis
