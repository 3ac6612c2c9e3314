#include "platform/pdf/PDFModule.h"

namespace caddis::pdf {

const Module& module()
{
    static const Module module("caddis-pdf");
    return module;
}

const Module& writerModule()
{
    static const Module module("caddis-pdf-writer");
    return module;
}

} // namespace caddis::pdf
