#include "platform/pdf/writer/QpdfSource.h"
#include "platform/pdf/writer/QpdfWriter.h"

// What the program looks up in caddis-pdf-writer.so; everything else in it is hidden.

extern "C" [[gnu::visibility("default")]] caddis::pdf::Source* caddisOpenPDFSource(const caddis::Data& data)
{
    return caddis::pdf::QpdfSource::open(data);
}

extern "C" [[gnu::visibility("default")]] caddis::pdf::Writer* caddisMakePDFWriter(
    caddis::Rect mediaBox, const caddis::Dictionary& attributes)
{
    return new caddis::pdf::QpdfWriter(mediaBox, attributes);
}
