#pragma once

#include "platform/image/Bitmap.h"

#include <string>

namespace caddis {

/// A made-up photograph: broad shades, edges, and a camera's noise; always the same.
Bitmap photograph(std::uint32_t wide, std::uint32_t high);

/// As JPEG at quality 90, colours at half the resolution.
std::string jpegOf(const Bitmap& bitmap, bool isProgressive);

} // namespace caddis
