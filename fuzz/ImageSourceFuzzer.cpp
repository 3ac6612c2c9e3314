// Whole files with pictures.
//
// Invariants: a picture has at least one pixel and exactly the bytes of its pixels; a thumbnail is no larger
// than asked for and no larger than the picture; a picture that has no header has no pixels either.

#include "Fuzz.h"
#include "platform/image/ImageSource.h"

#include <algorithm>

namespace {

constexpr std::uint32_t Side = 40;

void check(const caddis::Bitmap& bitmap, const caddis::ImageInfo& info)
{
    INVARIANT(bitmap.pixelsWide > 0 && bitmap.pixelsHigh > 0);
    INVARIANT(bitmap.pixels.size() == bitmap.bytesPerRow() * bitmap.pixelsHigh);
    INVARIANT(std::max(bitmap.pixelsWide, bitmap.pixelsHigh) <= Side);
    INVARIANT(bitmap.pixelsWide <= std::max(info.pixelsWide, info.pixelsHigh));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto source = caddis::ImageSource::createWithData(caddis::Data::copyOf(bytes));
    if (!source)
        return 0;
    const auto info = source->infoAtIndex(0);
    INVARIANT(!source->infoAtIndex(source->count()));
    source->propertiesAtIndex(0);
    // Blank pictures of hundreds of millions of pixels are allowed, but slow.
    if (info && std::uint64_t { info->pixelsWide } * info->pixelsHigh > 4'000'000)
        return 0;
    for (const bool allowsEmbedded : { false, true }) {
        const auto bitmap
            = source->thumbnailAtIndex(0, { .maxPixelSize = Side, .allowsEmbedded = allowsEmbedded });
        INVARIANT(info || !bitmap);
        if (bitmap)
            check(*bitmap, *info);
    }
    return 0;
}
