#include "platform/pdf/engine/PopplerDocument.h"
#include "platform/pdf/engine/QpdfWriter.h"

// What the program looks up in caddis-pdf.so; everything else in it is hidden.

extern "C" [[gnu::visibility("default")]] caddis::pdf::Document* caddisOpenPDFDocument(
    const caddis::Data& data)
{
    return caddis::pdf::PopplerDocument::open(data);
}

extern "C" [[gnu::visibility("default")]] caddis::pdf::Writer* caddisMakePDFWriter(
    caddis::Rect mediaBox, const caddis::Dictionary& attributes)
{
    return new caddis::pdf::QpdfWriter(mediaBox, attributes);
}
