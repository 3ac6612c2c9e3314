#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

/// How much a picture may cost, whatever its file says. Beyond it there is no picture.
namespace caddis::image::limits {

/// Pixels of a picture that is read row by row.
inline constexpr std::uint64_t MostPixels = 400'000'000;
/// Pixels, or blocks of a library's own, that have to be in memory at once, at 4 bytes each.
inline constexpr std::uint64_t MostPixelsInMemory = 64'000'000;
inline constexpr std::size_t MostBytesInMemory = MostPixelsInMemory * 4;
/// Of an ICC profile.
inline constexpr std::size_t MostProfileBytes = 16 << 20;
/// Pictures of one file that are counted.
inline constexpr std::size_t MostFrames = 100'000;
/// Of one reading; below the time after which a client gives a request up.
inline constexpr std::chrono::seconds MostTime { 8 };

inline bool allows(std::uint64_t wide, std::uint64_t high, std::uint64_t most = MostPixels)
{
    return wide > 0 && high > 0 && wide <= most && high <= most / wide;
}

} // namespace caddis::image::limits
