#pragma once

#include "platform/base/Data.h"
#include "platform/image/Reader.h"

#include <optional>
#include <vector>

namespace caddis::image {

/// Makes pixels of a codec's layout, colours already multiplied by alpha, those of a bitmap: red, green, blue
/// and alpha in sRGB. Without a profile, or with one that doesn't fit the pixels or can't be read, they count
/// as sRGB; inks are then what paper leaves of light.
void makeSRGB(std::vector<std::uint8_t>& pixels, PixelLayout layout, const std::optional<Data>& profile);

/// What the profile calls itself; empty when it can't be read.
String nameOfProfile(const Data& profile);

} // namespace caddis::image
