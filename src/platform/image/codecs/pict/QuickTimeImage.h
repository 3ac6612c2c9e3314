#pragma once

#include "platform/image/Bitmap.h"

#include <optional>
#include <string_view>

namespace caddis::image {

/// A picture as QuickTime packs it: `description` is its ImageDescription (QuickTime File Format, Image
/// Compression Manager). Whole files of other kinds and plain colours are read; nil: anything else.
std::optional<Bitmap> readQuickTimeImage(std::string_view description, std::string_view data);

} // namespace caddis::image
