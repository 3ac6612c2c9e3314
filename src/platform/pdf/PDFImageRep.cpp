#include "platform/pdf/PDFImageRep.h"

namespace caddis {

std::optional<PDFImageRep> PDFImageRep::imageRepWithData(const Data& data)
{
    std::shared_ptr<const PDFDocument> document = PDFDocument::initWithData(data);
    if (!document || document->pageCount() == 0)
        return std::nullopt;
    return PDFImageRep(std::move(document));
}

} // namespace caddis
