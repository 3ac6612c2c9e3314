#pragma once

#include "platform/pdf/PDFTypes.h"

#include <memory>

namespace caddis {

namespace pdf {
class Document;
}
class PDFContext;

/// One page of a PDF document. It keeps the document open; a document and its pages are used by one thread at
/// a time.
class PDFPage {
public:
    PDFPage(std::shared_ptr<const pdf::Document> document, std::size_t index)
        : m_document(std::move(document))
        , m_index(index)
    {
    }
    PDFPage(const PDFPage&) = delete;
    PDFPage& operator=(const PDFPage&) = delete;
    virtual ~PDFPage() = default;

    /// The page's text in the order in which it is drawn: words apart by one space, lines by one U+000A,
    /// right-to-left text in logical order. Hidden layers are left out, invisible text (that of scans) is in.
    ///
    /// Nil: the page can't be read. Work on one page is bounded; when it is cut short, by that bound or by
    /// the deadline, the text until there is the result.
    virtual std::optional<String> string(PDFDeadline deadline = {}) const;

    /// The same text with the styles that it is set in.
    virtual std::optional<PDFStyledText> styledString(PDFDeadline deadline = {}) const;

    /// The number printed on the page as the document defines it ("iv", "A-3"), else its place, counted
    /// from 1.
    String label() const;
    Rect boundsForBox(PDFDisplayBox box) const;
    /// 0, 90, 180 or 270 degrees clockwise.
    int rotation() const;
    /// How large the crop box is as the page is shown, turned.
    Size shownSize() const;
    std::vector<PDFAnnotation> annotations() const;
    /// "PDFPage, label 4": also makes sure that the page is loaded.
    virtual String description() const;
    /// Whether the document really has this page: a damaged page tree may promise more than there is.
    bool hasPageRef() const;

    /// The page as pixels. Nil: no size, more than 100 million pixels, or a page that can't be read.
    virtual std::optional<PDFRaster> raster(const PDFRasterRequest& request) const;
    /// Draws the page's content at the box's place into a PDF context's open page.
    virtual void drawWithBox(PDFDisplayBox box, PDFContext& context) const;

    /// The page as a PDF document of its own.
    virtual std::optional<Data> dataRepresentation() const;

    std::size_t index() const { return m_index; }

private:
    friend class PDFContext;

    std::shared_ptr<const pdf::Document> m_document;
    std::size_t m_index;
};

} // namespace caddis
