#pragma once

#include "Fuzz.h"
#include "platform/image/ImageSource.h"
#include "support/LibraryLeaks.h"

#include <algorithm>

namespace caddis {

/// What holds of each picture of any source: no picture without a header, at least one pixel and exactly the
/// bytes of its pixels, no larger than asked for and than the picture is.
inline void checkPicture(const ImageSource& source, std::size_t index, bool allowsEmbedded)
{
    constexpr std::uint32_t side = 40;
    const auto info = source.infoAtIndex(index);
    // Blank pictures of hundreds of millions of pixels are allowed, but slow.
    if (info && std::uint64_t { info->pixelsWide } * info->pixelsHigh > 4'000'000)
        return;
    const auto bitmap
        = source.thumbnailAtIndex(index, { .maxPixelSize = side, .allowsEmbedded = allowsEmbedded });
    INVARIANT(info || !bitmap);
    if (!bitmap)
        return;
    INVARIANT(bitmap->pixelsWide > 0 && bitmap->pixelsHigh > 0);
    INVARIANT(bitmap->pixels.size() == bitmap->bytesPerRow() * bitmap->pixelsHigh);
    INVARIANT(std::max(bitmap->pixelsWide, bitmap->pixelsHigh) <= side);
    INVARIANT(bitmap->pixelsWide <= std::max(info->pixelsWide, info->pixelsHigh));
}

} // namespace caddis
