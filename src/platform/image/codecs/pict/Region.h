#pragma once

#include "platform/image/codecs/pict/Cursor.h"

#include <vector>

namespace caddis::image {

/// The boxes that a region consists of; its outer box when they are too many.
std::vector<Box> readRegion(Cursor& cursor);

} // namespace caddis::image
