#include "platform/script/applescript/Randomness.h"

#include <random>

namespace caddis::applescript {

namespace {

std::mt19937_64& engine()
{
    thread_local std::mt19937_64 generator { std::random_device {}() };
    return generator;
}

} // namespace

std::size_t randomBelow(std::size_t limit)
{
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(engine());
}

double randomFraction() { return std::uniform_real_distribution<double>(0, 1)(engine()); }

void seedRandomness(std::uint64_t seed) { engine().seed(seed); }

} // namespace caddis::applescript
