#pragma once

#include "platform/image/Bitmap.h"

#include <optional>
#include <string>

namespace caddis {

/// Size, then a letter for each quarter's middle: top left, top right, bottom left, bottom right. A colour's
/// letter is the first of its name, "k" that of black; "nil" without a picture.
inline std::string seen(const std::optional<Bitmap>& bitmap)
{
    if (!bitmap)
        return "nil";
    std::string text = std::to_string(bitmap->pixelsWide) + "x" + std::to_string(bitmap->pixelsHigh) + " ";
    for (std::size_t quarter = 0; quarter < 4; ++quarter) {
        const std::size_t x = bitmap->pixelsWide * (1 + quarter % 2 * 2) / 4;
        const std::size_t y = bitmap->pixelsHigh * (1 + quarter / 2 * 2) / 4;
        const std::uint8_t* pixel = bitmap->row(y) + x * 4;
        const int bits = (pixel[0] > 127) * 4 + (pixel[1] > 127) * 2 + (pixel[2] > 127);
        text += pixel[3] < 128 ? '-' : "kbgcrmyw"[bits];
    }
    return text;
}

} // namespace caddis
