#include "platform/pdf/PDFModule.h"

namespace caddis::pdf {

const Module& module()
{
    static const Module module("caddis-pdf");
    return module;
}

} // namespace caddis::pdf
