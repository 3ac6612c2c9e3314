#pragma once

#include "platform/pdf/PDFDocument.h"

#include <mutex>

/// Pages whose drawing is serialised, for the platform releases on which it must not run concurrently.
namespace caddis {

/// From Foundation 1151.16 on it draws under one lock for the whole process, and logs what the drawing
/// throws; on older releases it is a plain page.
class ExtendedPDFPage : public PDFPage {
public:
    using PDFPage::PDFPage;

    void drawWithBox(PDFDisplayBox box, PDFContext& context) const override;
    std::optional<PDFRaster> raster(const PDFRasterRequest& request) const override;

    /// Recursive, so that a page may draw pages.
    static std::recursive_mutex& pageLock();
};

/// A document whose pages are ExtendedPDFPage on releases up to Foundation 1299, plain pages on later ones.
class ExtendedPDFDocument : public PDFDocument {
public:
    static std::unique_ptr<ExtendedPDFDocument> initWithData(const Data& data);

protected:
    using PDFDocument::PDFDocument;
    PageClass* pageClass() const override;
};

} // namespace caddis
