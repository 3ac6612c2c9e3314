#include "platform/image/ImageFiles.h"

#include "platform/image/ImageEngine.h"
#include "platform/image/ImageModule.h"

namespace caddis {

namespace {

std::optional<Data> written(const Bitmap& bitmap, const image::WriteRequest& request)
{
    auto* const write = image::module().entry<image::WriteImage>("caddisWriteImage");
    std::optional<Data> file;
    if (write)
        write(bitmap, request, file);
    return file;
}

} // namespace

std::optional<Data> TIFFRepresentation(const Bitmap& bitmap, Size points, TIFFCompression compression)
{
    return written(bitmap, { .points = points, .compression = compression });
}

std::optional<Data> PNGRepresentation(const Bitmap& bitmap)
{
    return representationOfBitmap(bitmap, BitmapImageFileType::PNG, 1);
}

std::optional<Data> JPEGRepresentation(const Bitmap& bitmap, double factor)
{
    return representationOfBitmap(bitmap, BitmapImageFileType::JPEG, factor);
}

std::optional<Data> representationOfBitmap(const Bitmap& bitmap, BitmapImageFileType type, double factor)
{
    return written(bitmap, { .type = type, .points = bitmap.size(), .factor = factor });
}

} // namespace caddis
