#pragma once

#include "platform/image/Bitmap.h"

#include <optional>

namespace caddis::tool {

/// The pixels of a TIFF file such as the helper writes for thumbnails: little-endian, one picture, 8 bits,
/// red, green, blue and perhaps alpha, in strips, not compressed. Nil for every other one. It is this small
/// because the bytes come from a process that a document may have taken over.
std::optional<Bitmap> bitmapOfPlainTIFF(const Data& file);

} // namespace caddis::tool
