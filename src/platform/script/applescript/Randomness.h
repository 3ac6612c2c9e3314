#pragma once

#include <cstddef>
#include <cstdint>

namespace caddis::applescript {

/// A number from 0 up to, and without, `limit`.
std::size_t randomBelow(std::size_t limit);
/// A number from 0 up to, and without, 1.
double randomFraction();
/// Begins a sequence that the seed determines.
void seedRandomness(std::uint64_t seed);

} // namespace caddis::applescript
