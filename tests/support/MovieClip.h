#pragma once

#include "support/Run.h"
#include "support/TemporaryFolder.h"

namespace caddis {

/// Frames of a clip carry their number as eight bars, the highest bit at the left: white is 1. 25 frames a
/// second, 160 by 96 pixels.
inline constexpr int ClipFramesPerSecond = 25;

/// Makes a clip with the ffmpeg program and returns its path; empty when that fails. `options` choose the
/// codec and whatever else comes after the input.
inline String makeClip(
    const TemporaryFolder& folder, const std::string& name, double seconds, const std::string& options)
{
    const String path = folder.path(name);
    const Outcome made = run("ffmpeg -v error -y -f lavfi -i \"color=black:s=160x96:r=25:d="
        + std::to_string(seconds) + ",format=gray,geq=lum='255*mod(floor(N/pow(2\\,7-floor(X/20)))\\,2)'\" "
        + "-pix_fmt yuv420p " + options + " '" + path.utf8() + "'");
    return made.status == 0 ? path : String();
}

/// The number that a frame's pixels (4 bytes each) carry.
inline int numberOfFrame(const std::uint8_t* pixels, std::size_t wide, std::size_t high)
{
    int number = 0;
    for (std::size_t bar = 0; bar < 8; ++bar) {
        const std::size_t column = bar * wide / 8 + wide / 16;
        number = number * 2 + (pixels[(high / 2 * wide + column) * 4] > 127 ? 1 : 0);
    }
    return number;
}

} // namespace caddis
