#pragma once

#include "platform/pdf/PDFTypes.h"

namespace caddis::tool {

/// The picture as a PNG file (RFC 2083) of 8-bit red, green and blue.
Data pngOf(const PDFRaster& raster);

} // namespace caddis::tool
