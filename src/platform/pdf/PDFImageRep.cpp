#include "platform/pdf/PDFImageRep.h"

namespace caddis {

std::optional<PDFImageRep> PDFImageRep::imageRepWithData(const Data& data)
{
    std::shared_ptr<const PDFDocument> document = PDFDocument::initWithData(data);
    if (!document || document->pageCount() == 0)
        return std::nullopt;
    return PDFImageRep(std::move(document));
}

Size PDFImageRep::size() const
{
    const Size box = m_page->boundsForBox(PDFDisplayBox::Crop).size();
    return m_page->rotation() % 180 == 0 ? box : Size { box.height, box.width };
}

} // namespace caddis
