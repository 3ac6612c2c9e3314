#include "platform/image/engine/FileSource.h"
#include "platform/image/engine/TIFFWriter.h"

// What the program looks up in caddis-image.so; everything else in it is hidden.

extern "C" [[gnu::visibility("default")]] caddis::image::Source* caddisOpenImage(const caddis::Data& data)
{
    return caddis::image::FileSource::open(data);
}

extern "C" [[gnu::visibility("default")]] bool caddisWriteTIFF(const caddis::Bitmap& bitmap,
    caddis::Size points, caddis::TIFFCompression compression, std::optional<caddis::Data>& out)
{
    out = caddis::image::writeTIFF(bitmap, points, compression);
    return out.has_value();
}
