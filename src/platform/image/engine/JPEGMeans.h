#pragma once

#include "platform/image/Reader.h"
#include "platform/image/engine/JPEGSegments.h"

#include <optional>

namespace caddis::image {

/// Hands on a progressive JPEG file at an eighth of its size: a pixel for the mean of each block of 8 × 8.
/// Only the scans that say the means are unpacked, and nothing is kept but the means.
///
/// False, and nothing handed on: a kind of file that this doesn't know (inks, arithmetic coding, 12 bits).
bool handMeansOfJPEG(const Bytes& bytes, RowSink& sink);

} // namespace caddis::image
