#pragma once

#include "platform/base/Value.h"
#include "platform/pdf/PDFPage.h"

#include <array>
#include <memory>

namespace caddis {

namespace pdf {
class Writer;
}

/// What a page is besides its content.
struct PDFPageInfo {
    Rect mediaBox;
    /// Annotations of the page that is drawn; of each dictionary only the entries in `keys` are written.
    std::vector<PDFAnnotation> annotations;
};

/// [a b c d e f]: x' = a x + c y + e, y' = b x + d y + f.
using AffineTransform = std::array<double, 6>;

/// A graphics context whose output is a PDF document.
///
///     context->beginPage({ page.boundsForBox(PDFDisplayBox::Media), {} });
///     context->drawPDFPage(page);
///     context->endPage();
///     auto data = context->close();
class PDFContext {
public:
    /// `attributes` are those of PDFDocument that the new document shall have: strings, and arrays of
    /// strings. Null: no PDF can be written.
    static std::unique_ptr<PDFContext> create(Rect mediaBox, const Dictionary& attributes);
    ~PDFContext();

    void beginPage(const PDFPageInfo& info);
    void endPage();

    void saveGState();
    void restoreGState();
    void concatCTM(const AffineTransform& transform);
    /// The page's content, once per written page; its streams and resources are copied as they are.
    void drawPDFPage(const PDFPage& page);

    /// Ends the document. Nil when it can't be written; the context is of no further use.
    std::optional<Data> close();

private:
    explicit PDFContext(std::unique_ptr<pdf::Writer> writer);

    std::unique_ptr<pdf::Writer> m_writer;
};

} // namespace caddis
