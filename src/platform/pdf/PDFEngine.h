#pragma once

#include "platform/base/Value.h"
#include "platform/pdf/PDFTypes.h"

#include <memory>

/// The boundary between the classes in this folder and the shared module `caddis-pdf`, which holds the
/// libraries. Only our own types cross it. Page indexes are below pageCount() where one is passed.
namespace caddis::pdf {

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
    virtual String label(std::size_t page) const = 0;
    virtual Rect bounds(std::size_t page, PDFDisplayBox box) const = 0;
    virtual int rotation(std::size_t page) const = 0;
    virtual std::vector<PDFAnnotation> annotations(std::size_t page) const = 0;
    virtual std::optional<PDFRaster> draw(std::size_t page, const PDFRasterRequest& request) const = 0;
    virtual std::optional<Data> dataOfPage(std::size_t page) const = 0;
    virtual std::optional<Data> dataWithPasswords(const PDFPasswords& passwords) const = 0;
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

/// The module's two entries, `caddisOpenPDFDocument` and `caddisMakePDFWriter`. Null: not a readable PDF.
using OpenDocument = Document*(const Data& data);
using MakeWriter = Writer*(Rect mediaBox, const Dictionary& attributes);

} // namespace caddis::pdf
