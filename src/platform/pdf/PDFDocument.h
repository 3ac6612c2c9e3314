#pragma once

#include "platform/base/Value.h"
#include "platform/pdf/PDFPage.h"

#include <memory>

namespace caddis {

/// A PDF document that is read.
///
/// The libraries behind it are a shared module opened with the first document; without it every document is
/// nil.
class PDFDocument {
public:
    using PageClass = std::unique_ptr<PDFPage>(std::shared_ptr<const pdf::Document>, std::size_t index);

    /// Nil when the bytes can't be made sense of as a PDF, or have no header in their first kilobyte. A
    /// document that wants a password is one, and locked.
    static std::unique_ptr<PDFDocument> initWithData(const Data& data);

    PDFDocument(const PDFDocument&) = delete;
    PDFDocument& operator=(const PDFDocument&) = delete;
    virtual ~PDFDocument() = default;

    /// Whether a password is needed. Such a document has no pages and no attributes.
    bool isLocked() const;
    std::size_t pageCount() const;
    /// "Title", "Author", "Subject", "Creator", "Producer": strings; "CreationDate", "ModDate": dates;
    /// "Keywords": an array of strings. Absent where the document has nothing to say.
    Dictionary documentAttributes() const;
    /// The table of contents; empty when there is none. At most 100,000 lines and 32 levels.
    std::vector<PDFOutlineItem> outline() const;

    /// Null beyond the last page.
    std::unique_ptr<PDFPage> pageAtIndex(std::size_t index) const;

    /// The document as it was read.
    Data dataRepresentation() const { return m_data; }
    /// The document encrypted for these passwords (AES-256). Nil when it can't be written.
    std::optional<Data> dataRepresentationWithPasswords(const PDFPasswords& passwords) const;
    /// The document with its pictures made smaller. Nil when it can't be written.
    std::optional<Data> dataRepresentationWithImages(const PDFImageSettings& settings) const;

protected:
    struct Opened {
        Data data;
        std::shared_ptr<const pdf::Document> document;
    };
    static std::optional<Opened> open(const Data& data);
    explicit PDFDocument(Opened opened)
        : m_data(std::move(opened.data))
        , m_document(std::move(opened.document))
    {
    }

    /// Makes the pages; a subclass may put a subclass of PDFPage here.
    virtual PageClass* pageClass() const;
    template <typename Page>
    static std::unique_ptr<PDFPage> makePage(std::shared_ptr<const pdf::Document> document, std::size_t index)
    {
        return std::make_unique<Page>(std::move(document), index);
    }

private:
    Data m_data;
    std::shared_ptr<const pdf::Document> m_document;
};

} // namespace caddis
