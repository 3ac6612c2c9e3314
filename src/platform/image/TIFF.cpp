#include "platform/image/TIFF.h"

#include "platform/image/ImageEngine.h"
#include "platform/image/ImageModule.h"

namespace caddis {

std::optional<Data> TIFFRepresentation(const Bitmap& bitmap, Size points, TIFFCompression compression)
{
    auto* const write = image::module().entry<image::WriteTIFF>("caddisWriteTIFF");
    std::optional<Data> tiff;
    if (write)
        write(bitmap, points, compression, tiff);
    return tiff;
}

} // namespace caddis
