#pragma once

#include "platform/movie/MovieTypes.h"
#include "platform/movie/engine/FFmpeg.h"

#include <optional>

namespace caddis::movie {

/// The greatest picture that is decoded or made, in pixels: 8K.
inline constexpr std::int64_t MostPixels = 8192LL * 4352;

/// Pixels as they are stored, stretched in width to square ones.
Size shownSize(int width, int height, AVRational sampleAspectRatio);

/// The decoded picture in the colours that its stream says, or those usual for its size. Nil: it is too large
/// or can't be converted.
std::optional<Bitmap> pictureOf(const AVFrame& frame, AVRational sampleAspectRatio);

} // namespace caddis::movie
