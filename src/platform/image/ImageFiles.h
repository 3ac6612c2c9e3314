#pragma once

#include "platform/image/Bitmap.h"
#include "platform/image/ImageTypes.h"

#include <optional>

/// Bitmaps as files. All are nil without pixels.
namespace caddis {

/// Shown `points` large.
std::optional<Data> TIFFRepresentation(
    const Bitmap& bitmap, Size points, TIFFCompression compression = TIFFCompression::None);
inline std::optional<Data> TIFFRepresentation(const Bitmap& bitmap)
{
    return TIFFRepresentation(bitmap, bitmap.size());
}
std::optional<Data> PNGRepresentation(const Bitmap& bitmap);
/// `factor` from 0, the smallest file, to 1, the best. What is clear becomes white.
std::optional<Data> JPEGRepresentation(const Bitmap& bitmap, double factor = 0.9);

/// As the platform's kinds of file. The factor counts for JPEG alone. Nil for kinds that can't be written.
std::optional<Data> representationOfBitmap(const Bitmap& bitmap, BitmapImageFileType type, double factor);

} // namespace caddis
