#pragma once

#include "platform/base/Data.h"
#include "platform/base/Geometry.h"

#include <cstdint>

namespace caddis {

/// Pixels in memory: rows from the top without gaps, 4 bytes each: red, green, blue, alpha, in sRGB, the
/// colours multiplied by alpha. Without alpha every fourth byte is 255.
struct Bitmap {
    std::uint32_t pixelsWide = 0;
    std::uint32_t pixelsHigh = 0;
    bool hasAlpha = false;
    Data pixels;

    std::size_t bytesPerRow() const { return std::size_t { pixelsWide } * 4; }
    const std::uint8_t* row(std::size_t y) const { return pixels.bytes() + y * bytesPerRow(); }
    Size size() const { return { static_cast<double>(pixelsWide), static_cast<double>(pixelsHigh) }; }
};

} // namespace caddis
