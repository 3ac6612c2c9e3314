#include "media/ExtendedPDF.h"

#include "platform/base/Exception.h"
#include "platform/base/PlatformVersion.h"

#include <cmath>

namespace caddis {

namespace {

constexpr double FirstFoundationWithLock = 1151.16;
constexpr double LastFoundationWithExtendedPages = 1299;

template <typename Draw> std::invoke_result_t<Draw&> serialised(Draw&& draw)
{
    if (PlatformVersion::current().foundation < FirstFoundationWithLock)
        return draw();
    const std::lock_guard lock(ExtendedPDFPage::pageLock());
    return guarded(u"drawWithBox:inContext:", u"ExtendedPDFPage", draw);
}

} // namespace

std::recursive_mutex& ExtendedPDFPage::pageLock()
{
    static std::recursive_mutex lock;
    return lock;
}

void ExtendedPDFPage::drawWithBox(PDFDisplayBox box, PDFContext& context) const
{
    serialised([&] { PDFPage::drawWithBox(box, context); });
}

std::optional<PDFRaster> ExtendedPDFPage::raster(const PDFRasterRequest& request) const
{
    return serialised([&] { return PDFPage::raster(request); });
}

std::unique_ptr<ExtendedPDFDocument> ExtendedPDFDocument::initWithData(const Data& data)
{
    auto opened = open(data);
    return std::unique_ptr<ExtendedPDFDocument>(
        opened ? new ExtendedPDFDocument(std::move(*opened)) : nullptr);
}

PDFDocument::PageClass* ExtendedPDFDocument::pageClass() const
{
    if (std::floor(PlatformVersion::current().foundation) > LastFoundationWithExtendedPages)
        return PDFDocument::pageClass();
    return makePage<ExtendedPDFPage>;
}

} // namespace caddis
