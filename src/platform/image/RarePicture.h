#pragma once

#include <cstdint>

namespace caddis::image {

/// What `caddis-rare-picture CODER INPUT OUTPUT` writes before the pixels, in the machine's byte order. The
/// pixels follow as rows from the top: red, green, blue, alpha, not multiplied.
struct RarePicture {
    std::uint32_t pixelsWide;
    std::uint32_t pixelsHigh;
    std::uint32_t hasAlpha;
    std::uint32_t depth;
};

} // namespace caddis::image
