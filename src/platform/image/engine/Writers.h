#pragma once

#include "platform/image/ImageEngine.h"

namespace caddis::image {

/// Nil without pixels, and for kinds that can't be written.
std::optional<Data> writeImage(const Bitmap& bitmap, const WriteRequest& request);

/// The kinds of file, one source each. There is at least one pixel.
using WriteFile = std::optional<Data>(const Bitmap& bitmap, const WriteRequest& request);

/// Associated alpha, 8 bits a sample; the resolution says how many points the pixels are.
WriteFile writeTIFF;
/// Straight alpha where there is any.
WriteFile writePNG;
/// Upon white.
WriteFile writeJPEG;
/// Upon white, 24 bits a pixel.
WriteFile writeBMP;
/// Upon white, in 256 colours.
WriteFile writeGIF;

/// The row's colours, three bytes a pixel, as they show upon white.
void opaqueRow(const Bitmap& bitmap, std::size_t y, std::uint8_t* out);

} // namespace caddis::image
