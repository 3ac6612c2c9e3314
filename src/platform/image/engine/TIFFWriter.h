#pragma once

#include "platform/image/ImageEngine.h"

namespace caddis::image {

/// Associated alpha, 8 bits a sample; the resolution says how many points the pixels are.
std::optional<Data> writeTIFF(const Bitmap& bitmap, Size points, TIFFCompression compression);

} // namespace caddis::image
