#pragma once

#include "platform/pdf/PDFEngine.h"
#include "platform/pdf/engine/FontCache.h"
#include "platform/pdf/engine/StreamBytes.h"
#include "platform/pdf/engine/TextPage.h"

#include <PDFDoc.h>

#include <memory>

namespace caddis::pdf {

/// A document read by Poppler.
class PopplerDocument final : public Document {
public:
    /// Null when it is no PDF. One that wants a password is locked; one whose objects can be made out, but no
    /// page of it, has no pages.
    static PopplerDocument* open(const Data& data);
    ~PopplerDocument() override;

    bool isLocked() const override { return m_locked; }
    std::size_t pageCount() const override { return m_pageCount; }
    Dictionary attributes() const override;
    std::vector<PDFOutlineItem> outline() const override;

    bool hasPage(std::size_t page) const override { return pageAt(page) != nullptr; }
    std::optional<String> text(std::size_t page, PDFDeadline deadline) const override;
    std::optional<PDFStyledText> styledText(std::size_t page, PDFDeadline deadline) const override;
    bool lastPageWasCut() const override { return m_lastPageWasCut; }
    String label(std::size_t page) const override;
    Rect bounds(std::size_t page, PDFDisplayBox box) const override;
    int rotation(std::size_t page) const override;
    std::vector<PDFAnnotation> annotations(std::size_t page) const override;
    std::optional<PDFRaster> draw(std::size_t page, const PDFRasterRequest& request) const override;
    std::optional<PDFDestination> destinationOf(
        std::size_t page, const PDFAnnotation& annotation) const override;
    /// The same bytes for the module that writes, read when they are first wanted. Null when it can't read
    /// them, sees other pages in them, or when there are so many objects that copies of them would fill the
    /// memory.
    std::shared_ptr<const Source> source() const override;

    /// The page and place that an entry of this kind leads to inside the document: an array or a name.
    std::unique_ptr<LinkDest> destination(const Object& entry) const;
    std::optional<std::size_t> pageOf(const LinkDest& destination) const;
    /// Destination of an outline item or a link: its /Dest, else that of its action "go to". Null: none
    /// inside.
    std::unique_ptr<LinkDest> destinationOf(const Dict& item) const;

private:
    explicit PopplerDocument(const Data& data);
    std::unique_ptr<PDFDoc> read();

    bool isOpen() const { return !m_locked && m_document->isOk(); }
    Page* pageAt(std::size_t page) const;
    std::optional<TextPage> read(std::size_t page, PDFDeadline deadline, TextStyles* styles) const;

    Data m_data;
    bool m_isRepaired = false; ///< Poppler had to search the objects
    bool m_locked = false;
    std::unique_ptr<PDFDoc> m_document;
    std::size_t m_pageCount;
    // Reading a page fills them; they are no part of what the document says.
    mutable FontCache m_fonts;
    mutable StreamBytes m_streams;
    mutable std::shared_ptr<const Source> m_source;
    mutable bool m_sourceIsTried = false;
    mutable bool m_lastPageWasCut = false;
};

} // namespace caddis::pdf
