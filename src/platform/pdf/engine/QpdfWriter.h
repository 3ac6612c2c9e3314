#pragma once

#include "platform/pdf/engine/PopplerDocument.h"
#include "platform/pdf/engine/Qpdf.h"

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
    struct Destination {
        QPDFObjectHandle holder; ///< the annotation whose /Dest is to be set
        const PopplerDocument* document;
        std::size_t page;
        QPDFObjectHandle place; ///< the destination's array, without its page
    };

    template <typename Work> void attempt(Work&& work);
    void flushOperators();
    QPDFObjectHandle copy(QPDF& source, const QPDFObjectHandle& object);
    void copyAnnotation(const PopplerDocument& document, QPDFObjectHandle page, std::size_t number,
        const PDFAnnotation& annotation);
    void setDestinations();

    QPDF m_output;
    Rect m_mediaBox;
    bool m_failed = false;
    std::vector<std::shared_ptr<QPDF>> m_sources; ///< read until the output is written
    std::vector<Destination> m_destinations;
    std::map<std::pair<const PopplerDocument*, std::size_t>, QPDFObjectHandle> m_written;

    // Of the open page.
    QPDFObjectHandle m_page;
    std::vector<PDFAnnotation> m_annotations;
    std::vector<QPDFObjectHandle> m_contents;
    std::string m_operators;
};

} // namespace caddis::pdf
