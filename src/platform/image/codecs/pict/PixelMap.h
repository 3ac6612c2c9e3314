#pragma once

#include "platform/image/codecs/pict/Cursor.h"

#include <optional>
#include <vector>

namespace caddis::image {

/// The place of a colour: opaque, 0xAARRGGBB.
using Colour = std::uint32_t;

/// A colour of three components with 16 bits each.
Colour readColour(Cursor& cursor);

/// What stands before the pixels of a bitmap or pixel map. Inside Macintosh, Imaging With QuickDraw, 4.
struct PixelMapHead {
    Box bounds;
    std::uint32_t bytesPerRow = 0;
    std::uint32_t packing = 0;
    std::uint32_t bits = 1; ///< of a pixel
    std::uint32_t components = 1;
    bool hasColours = false; ///< pixels are indexes
    std::vector<Colour> colours; ///< empty: those of the drawing

    /// `isDirect`: colours themselves stand in the pixels, and an address before the head.
    static PixelMapHead read(Cursor& cursor, bool isDirect);
};

/// Rows from the top without gaps. Index 0 is clear where `isZeroClear`. Throws Broken when there is too much
/// of it.
std::vector<Colour> readPixels(
    Cursor& cursor, const PixelMapHead& head, bool isPacked, Colour fore, Colour back, bool isZeroClear);

} // namespace caddis::image
