#pragma once

#include "platform/pdf/PDFDocument.h"

namespace caddis {

/// The first page of a PDF document as a picture without pixels of its own.
class PDFImageRep {
public:
    /// Nil when the bytes are no PDF document, or one that is locked or has no pages.
    static std::optional<PDFImageRep> imageRepWithData(const Data& data);

    /// The document that the picture was made of.
    Data PDFRepresentation() const { return m_document->dataRepresentation(); }
    /// Points; of the page as it is shown.
    Size size() const { return m_page->shownSize(); }
    std::size_t pageCount() const { return m_document->pageCount(); }
    /// The picture, or the part `source` of it, in exactly so many pixels; nil as PDFPage::raster.
    std::optional<PDFRaster> raster(const PDFRasterRequest& request) const { return m_page->raster(request); }

private:
    explicit PDFImageRep(std::shared_ptr<const PDFDocument> document)
        : m_document(std::move(document))
        , m_page(m_document->pageAtIndex(0))
    {
    }

    std::shared_ptr<const PDFDocument> m_document;
    std::shared_ptr<const PDFPage> m_page;
};

} // namespace caddis
