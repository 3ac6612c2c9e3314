#include "service/PDFRequests.h"

#include "foundation/ObjectExtensions.h"
#include "media/PDFText.h"
#include "platform/base/PlatformVersion.h"
#include "platform/documents/PDFSelection.h"
#include "platform/richtext/RTFD.h"

namespace caddis {

namespace {

constexpr int TextTimeout = 60; // Seconds.
constexpr double FoundationWithSelectionData = 1252; // Selections make RTFD by themselves from there on.

std::optional<Data> richText(const PDFDocument& document)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(TextTimeout);
    const auto selection = PDFSelection::selectionForEntireDocument(document, deadline);
    if (!selection)
        return std::nullopt;
    if (PlatformVersion::current().foundation >= FoundationWithSelectionData
        && safeRespondsToSelector(*selection, u"rtfdData")) {
        if (auto rtfd = selection->rtfdData())
            return rtfd;
    }
    return RTFDFromString(selection->attributedString(), {});
}

template <typename T> std::optional<Value> asValue(std::optional<T> found)
{
    return found ? std::optional(Value(std::move(*found))) : std::nullopt;
}

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
    } else if (attributed) {
        reply.set(u"String"_s, asValue(richText(*document)));
    } else {
        reply.set(u"String"_s, asValue(fixedAndNormalizedString(*document, TextTimeout)));
    }
    reply.set(u"PageCount"_s, Value(document->pageCount()));
    for (const auto& [key, value] : attributes)
        reply.set(key, value);
    if (size == PageSize::Wanted && document->pageCount() > 0)
        addSize(reply, *document);
    return reply;
}

} // namespace caddis
