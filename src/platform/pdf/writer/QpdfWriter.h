#pragma once

#include "platform/pdf/PDFEngine.h"
#include "platform/pdf/writer/Qpdf.h"

#include <map>
#include <string>
#include <vector>

namespace caddis::pdf {

/// Writes a document of pages whose contents and resources are copied from others.
///
/// A page is a new dictionary: nothing of the old page tree comes along but what its content draws. Links
/// inside the source document lead to the new pages of the same source pages; where a page is not written,
/// they lead nowhere. Any failure makes close() nil.
class QpdfWriter final : public Writer {
public:
    QpdfWriter(Rect mediaBox, const Dictionary& attributes);

    void beginPage(Rect mediaBox, std::vector<PDFAnnotation> annotations) override;
    void appendContent(std::string_view operators) override;
    void drawPage(const Document& document, std::size_t page) override;
    void endPage() override;
    std::optional<Data> close() override;

private:
    struct PageOf {
        const Document* document;
        std::size_t page;

        // NOLINTNEXTLINE(modernize-use-nullptr): what the compiler writes for it compares with 0
        friend auto operator<=>(const PageOf&, const PageOf&) = default;
    };
    struct Link {
        QPDFObjectHandle annotation;
        const Document* document;
        PDFDestination destination;
    };

    template <typename Work> void attempt(Work&& work);
    void flushOperators();
    QPDFObjectHandle copy(QPDF& source, const QPDFObjectHandle& object);
    void copyAnnotation(QPDFObjectHandle page, const PDFAnnotation& annotation, PageOf place);
    void setDestinations();

    QPDF m_output;
    Rect m_mediaBox;
    bool m_failed = false;
    std::vector<std::shared_ptr<const Source>> m_sources; ///< read until the output is written
    std::vector<Link> m_links;
    std::map<PageOf, QPDFObjectHandle> m_written;

    // Of the open page.
    QPDFObjectHandle m_page;
    std::vector<PDFAnnotation> m_annotations;
    std::vector<QPDFObjectHandle> m_contents;
    std::string m_operators;
};

} // namespace caddis::pdf
