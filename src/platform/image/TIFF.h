#pragma once

#include "platform/image/Bitmap.h"
#include "platform/image/ImageTypes.h"

#include <optional>

namespace caddis {

/// The bitmap as a TIFF file, shown `points` large. Nil without pixels.
std::optional<Data> TIFFRepresentation(
    const Bitmap& bitmap, Size points, TIFFCompression compression = TIFFCompression::None);
inline std::optional<Data> TIFFRepresentation(const Bitmap& bitmap)
{
    return TIFFRepresentation(bitmap, bitmap.size());
}

} // namespace caddis
