#include "platform/image/AreaAverage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace caddis {
namespace {

using Pixels = std::vector<std::uint8_t>;

struct Shape {
    std::uint32_t wide;
    std::uint32_t high;
};

Pixels shrunk(const Pixels& source, Shape from, Shape to)
{
    AreaAverage average(from.wide, from.high, to.wide, to.high);
    for (std::uint32_t y = 0; y < from.high; ++y)
        average.addRow(source.data() + std::size_t { y } * from.wide * 4);
    return average.take();
}

// How much of pixel `at` lies under pixel `over` of the result.
double part(std::uint32_t at, std::uint32_t over, double step)
{
    return std::max(0.0, std::min(at + 1.0, (over + 1) * step) - std::max<double>(at, over * step));
}

double slowMean(const Pixels& source, Shape from, Shape to, std::uint32_t place, std::size_t component)
{
    const double stepX = static_cast<double>(from.wide) / to.wide;
    const double stepY = static_cast<double>(from.high) / to.high;
    double total = 0;
    for (std::uint32_t y = 0; y < from.high; ++y)
        for (std::uint32_t x = 0; x < from.wide; ++x)
            total += source[(std::size_t { y } * from.wide + x) * 4 + component]
                * part(x, place % to.wide, stepX) * part(y, place / to.wide, stepY);
    return total / (stepX * stepY);
}

TEST(AreaAverage, EqualsTheMeanOfTheCoveredArea)
{
    std::minstd_rand random(7);
    for (const auto& [from, to] : { std::pair<Shape, Shape> { { 17, 13 }, { 5, 4 } },
             { { 64, 9 }, { 63, 9 } }, { { 1300, 3 }, { 1, 1 } }, { { 31, 40 }, { 31, 7 } } }) {
        Pixels source(std::size_t { from.wide } * from.high * 4);
        for (auto& byte : source)
            byte = static_cast<std::uint8_t>(random() >> 8);
        const Pixels result = shrunk(source, from, to);
        for (std::uint32_t index = 0; index < result.size(); ++index)
            ASSERT_NEAR(result[index], slowMean(source, from, to, index / 4, index % 4), 0.51)
                << from.wide << ' ' << index;
    }
}

TEST(AreaAverage, TheSameSizeAndWhiteAreUnchanged)
{
    const Pixels source { 1, 2, 3, 4, 250, 251, 252, 253 };
    EXPECT_EQ(shrunk(source, { 2, 1 }, { 2, 1 }), source);
    EXPECT_EQ(shrunk(Pixels(5000 * 4 * 3, 255), { 5000, 3 }, { 7, 2 }), Pixels(7 * 2 * 4, 255));
}

} // namespace
} // namespace caddis
