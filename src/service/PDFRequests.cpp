#include "service/PDFRequests.h"

#include "media/PDFText.h"

namespace caddis {

namespace {

constexpr double TextTimeout = 60; // Seconds.

void addSize(Dictionary& reply, const PDFDocument& document)
{
    const auto page = document.pageAtIndex(0);
    const String size = stringFromSize(page ? page->boundsForBox(PDFDisplayBox::Media).size() : Size());
    reply.set(u"Size"_s, Value(size));
    reply.set(u"PixelSize"_s, Value(size));
    reply.set(u"Alpha"_s, Value(false));
}

} // namespace

std::optional<Dictionary> _attributedStringWithPDF(
    bool attributed, const std::optional<Data>& pdf, const std::optional<String>&, PageSize size)
{
    const auto document = pdf ? PDFDocument::initWithData(*pdf) : nullptr;
    if (!document)
        return std::nullopt;
    const Dictionary attributes = document->documentAttributes();
    Dictionary reply;
    if (document->isLocked()) {
        reply.set(u"Locked"_s, Value(true));
    } else if (!attributed) {
        // FIXME: The text of a selection with its attributes, as RTFD, needs attributed strings.
        if (auto text = fixedAndNormalizedString(*document, TextTimeout))
            reply.set(u"String"_s, Value(std::move(*text)));
    }
    reply.set(u"PageCount"_s, Value(document->pageCount()));
    for (const auto& [key, value] : attributes)
        reply.set(key, value);
    if (size == PageSize::Wanted && document->pageCount() > 0)
        addSize(reply, *document);
    return reply;
}

} // namespace caddis
