#include "media/PDFRedrawing.h"

#include "platform/base/PlatformVersion.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr double FirstFoundationWithFault = 1349.25;
constexpr OperatingSystemVersion FirstSystemWithoutFault { 10, 12, 3 };

std::vector<PDFAnnotation> annotationsWithoutAppearances(const PDFPage& page)
{
    auto annotations = page.annotations();
    for (PDFAnnotation& annotation : annotations)
        std::erase(annotation.keys, u"/AP");
    std::erase_if(annotations, [](const PDFAnnotation& annotation) { return annotation.keys.empty(); });
    return annotations;
}

bool platformWritesWell()
{
    const PlatformVersion& version = PlatformVersion::current();
    return version.foundation < FirstFoundationWithFault
        || version.isOperatingSystemAtLeastVersion(FirstSystemWithoutFault);
}

bool losesByRedrawing(const PDFPage& page)
{
    const auto annotations = page.annotations();
    return page.rotation() != 0
        || !std::all_of(
            annotations.begin(), annotations.end(), [](const PDFAnnotation& one) { return one.isLink(); });
}

bool losesByRedrawing(const PDFDocument& document)
{
    if (document.pageCount() == 0 || !document.outline().empty())
        return true;
    for (std::size_t index = 0; index < document.pageCount(); ++index) {
        const auto page = document.pageAtIndex(index);
        if (page && losesByRedrawing(*page))
            return true;
    }
    return false;
}

Dictionary auxiliaryInformation(const PDFDocument& document)
{
    const Dictionary attributes = document.documentAttributes();
    Dictionary kept;
    for (const char16_t* key : { u"Title", u"Author", u"Subject", u"Creator", u"Keywords" }) {
        if (const Value* value = attributes.find(key))
            kept.set(String(key), *value);
    }
    return kept;
}

std::optional<Data> redrawn(const PDFDocument& document)
{
    const auto first = document.pageAtIndex(0);
    const auto context = PDFContext::create(
        first ? first->boundsForBox(PDFDisplayBox::Media) : Rect(), auxiliaryInformation(document));
    if (!context)
        return std::nullopt;
    _drawToPDFContext(document, *context);
    return context->close();
}

Data redrawnIf(bool isWanted, const PDFDocument& document)
{
    if (!isWanted || losesByRedrawing(document))
        return document.dataRepresentation();
    return redrawn(document).value_or(document.dataRepresentation());
}

// The page turned as it is shown, with the box's corner that is then at the lower left at the origin.
AffineTransform transformForBox(const PDFPage& page, PDFDisplayBox box)
{
    const Rect bounds = page.boundsForBox(box);
    const double right = bounds.x + bounds.width;
    const double top = bounds.y + bounds.height;
    switch (page.rotation()) {
    case 90:
        return { 0, -1, 1, 0, -bounds.y, right };
    case 180:
        return { -1, 0, 0, -1, right, top };
    case 270:
        return { 0, 1, -1, 0, top, -bounds.x };
    default:
        return { 1, 0, 0, 1, -bounds.x, -bounds.y };
    }
}

} // namespace

inline namespace OstraPDFPageExtensions {

std::optional<PDFImageRep> imageRepresentation(const PDFPage& page)
{
    const auto data = page.dataRepresentation();
    return data ? PDFImageRep::imageRepWithData(*data) : std::nullopt;
}

void willDrawToContext(const PDFPage& page, PDFContext& context, PDFDisplayBox box)
{
    context.saveGState();
    // Releases up to 1299 name this transformation otherwise; it is the same one.
    context.concatCTM(transformForBox(page, box));
}

void didDrawToContext(const PDFPage&, PDFContext& context) { context.restoreGState(); }

} // namespace OstraPDFPageExtensions

inline namespace OstraPDFDocumentExtensions {

void _drawToPDFContext(const PDFDocument& document, PDFContext& context)
{
    for (std::size_t index = 0; index < document.pageCount(); ++index) {
        const auto page = document.pageAtIndex(index);
        if (!page) {
            context.beginPage({});
        } else {
            context.beginPage(
                { page->boundsForBox(PDFDisplayBox::Media), annotationsWithoutAppearances(*page) });
            if (page->hasPageRef())
                context.drawPDFPage(*page);
            else
                page->drawWithBox(PDFDisplayBox::Media, context);
        }
        context.endPage();
    }
}

Data fixedDataRepresentation(const PDFDocument& document)
{
    return redrawnIf(!platformWritesWell(), document);
}

std::optional<Data> fixedDataRepresentationWithOptions(const PDFDocument& document, const Dictionary& options)
{
    const Value* const redraws = options.find(u"Redraw");
    const bool isWanted = redraws && redraws->as<bool>() && *redraws->as<bool>();
    const Data data = redrawnIf(isWanted || !platformWritesWell(), document);
    const auto user = options.stringForKey(u"PDFDocumentUserPasswordOption");
    const auto owner = options.stringForKey(u"PDFDocumentOwnerPasswordOption");
    if (!user && !owner)
        return data;
    const auto plain = PDFDocument::initWithData(data);
    const String reader = user.value_or(String());
    return plain ? plain->dataRepresentationWithPasswords({ reader, owner.value_or(reader) }) : std::nullopt;
}

} // namespace OstraPDFDocumentExtensions

} // namespace caddis
