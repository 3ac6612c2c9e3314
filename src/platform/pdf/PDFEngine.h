#pragma once

#include "platform/base/Value.h"
#include "platform/pdf/PDFTypes.h"

#include <memory>

/// The boundary between the classes in this folder and the shared modules that hold the libraries:
/// `caddis-pdf` reads, `caddis-pdf-writer`, which most documents never need, writes. Only our own types cross
/// it. Page indexes are below pageCount() where one is passed.
namespace caddis::pdf {

/// A document as the module that writes has read it.
class Source {
public:
    virtual ~Source() = default;

    /// Nil when the list of pages can't be made out.
    virtual std::optional<std::size_t> pageCount() const = 0;
    /// Whether the empty password is that of an encrypted document's owner, but not one for reading it.
    virtual bool isForOwnerOnly() const = 0;
    virtual std::optional<Data> dataOfPage(std::size_t page) const = 0;
    virtual std::optional<Data> dataWithPasswords(const PDFPasswords& passwords) const = 0;
    virtual std::optional<Data> dataWithImages(const PDFImageSettings& settings) const = 0;
};

class Document {
public:
    virtual ~Document() = default;

    virtual bool isLocked() const = 0;
    virtual std::size_t pageCount() const = 0;
    virtual Dictionary attributes() const = 0;
    virtual std::vector<PDFOutlineItem> outline() const = 0;

    virtual bool hasPage(std::size_t page) const = 0;
    virtual std::optional<String> text(std::size_t page, PDFDeadline deadline) const = 0;
    virtual std::optional<PDFStyledText> styledText(std::size_t page, PDFDeadline deadline) const = 0;
    /// Whether the text that was last read ended with what a page may cost.
    virtual bool lastPageWasCut() const = 0;
    virtual String label(std::size_t page) const = 0;
    virtual Rect bounds(std::size_t page, PDFDisplayBox box) const = 0;
    virtual int rotation(std::size_t page) const = 0;
    virtual std::vector<PDFAnnotation> annotations(std::size_t page) const = 0;
    virtual std::optional<PDFRaster> draw(std::size_t page, const PDFRasterRequest& request) const = 0;
    /// Where an annotation leads to inside the document.
    virtual std::optional<PDFDestination> destinationOf(
        std::size_t page, const PDFAnnotation& annotation) const = 0;
    /// Null when the document can't be written.
    virtual std::shared_ptr<const Source> source() const = 0;
};

/// A PDF document that is being written, page by page.
class Writer {
public:
    virtual ~Writer() = default;

    virtual void beginPage(Rect mediaBox, std::vector<PDFAnnotation> annotations) = 0;
    virtual void appendContent(std::string_view operators) = 0;
    virtual void drawPage(const Document& document, std::size_t page) = 0;
    virtual void endPage() = 0;
    virtual std::optional<Data> close() = 0;
};

/// `caddisOpenPDFDocument` of `caddis-pdf`. Null: not a readable PDF.
using OpenDocument = Document*(const Data& data);

/// `caddisOpenPDFSource` and `caddisMakePDFWriter` of `caddis-pdf-writer`. Null: not a readable PDF.
using OpenSource = Source*(const Data& data);
using MakeWriter = Writer*(Rect mediaBox, const Dictionary& attributes);

} // namespace caddis::pdf
