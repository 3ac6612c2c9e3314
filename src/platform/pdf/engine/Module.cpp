#include "platform/pdf/engine/PopplerDocument.h"

// What the program looks up in caddis-pdf.so; everything else in it is hidden.

extern "C" [[gnu::visibility("default")]] caddis::pdf::Document* caddisOpenPDFDocument(
    const caddis::Data& data)
{
    return caddis::pdf::PopplerDocument::open(data);
}
