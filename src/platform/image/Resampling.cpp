// A part of a bitmap larger or smaller: the mean of the area where it becomes smaller, a polynomial through
// the neighbours where it becomes larger, one direction after the other.

#include "platform/image/AreaAverage.h"
#include "platform/image/GraphicsContext.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace caddis {

namespace {

constexpr std::size_t MostTaps = 4;

// The source pixels that a pixel of the result is mixed from. They stand side by side around `first`, which
// may lie outside; outside, the pixel at the edge counts.
struct Mix {
    std::int64_t first = 0;
    std::array<float, MostTaps> weights {};
};

Mix mixAt(double place, bool isCubic)
{
    const double left = std::floor(place);
    const auto part = static_cast<float>(place - left);
    const auto first = static_cast<std::int64_t>(left);
    if (!isCubic)
        return { first, { 1 - part, part, 0, 0 } };
    // Catmull and Rom's: it goes through the pixels and keeps edges sharp.
    const float square = part * part;
    const float cube = square * part;
    return { first - 1,
        { 0.5F * (2 * square - cube - part), 0.5F * (3 * cube - 5 * square + 2),
            0.5F * (4 * square - 3 * cube + part), 0.5F * (cube - square) } };
}

std::vector<Mix> mixes(std::uint32_t from, std::uint32_t to, bool isCubic)
{
    std::vector<Mix> all;
    all.reserve(to);
    for (std::uint32_t index = 0; index < to; ++index)
        all.push_back(mixAt((index + 0.5) * from / to - 0.5, isCubic));
    return all;
}

// Cubic mixing may overshoot; a colour never exceeds its alpha.
void store(const std::array<float, 4>& sums, std::uint8_t* out)
{
    const float alpha = std::clamp(sums[3], 0.0F, 255.0F);
    for (std::size_t component = 0; component < 4; ++component)
        out[component] = static_cast<std::uint8_t>(std::lrint(std::clamp(sums[component], 0.0F, alpha)));
}

// `pixelAt(index)` is the source's pixel of that index in the direction that is mixed.
template <typename PixelAt>
void mixPixel(const Mix& mix, std::uint32_t count, PixelAt pixelAt, std::uint8_t* out)
{
    std::array<float, 4> sums {};
    for (std::size_t tap = 0; tap < MostTaps; ++tap) {
        if (mix.weights[tap] == 0)
            continue;
        const auto index = std::clamp<std::int64_t>(mix.first + static_cast<std::int64_t>(tap), 0, count - 1);
        const std::uint8_t* pixel = pixelAt(static_cast<std::size_t>(index));
        for (std::size_t component = 0; component < 4; ++component)
            sums[component] += mix.weights[tap] * static_cast<float>(pixel[component]);
    }
    store(sums, out);
}

struct Pixels {
    std::uint32_t wide;
    std::uint32_t high;
    std::vector<std::uint8_t> bytes;

    const std::uint8_t* at(std::size_t x, std::size_t y) const { return bytes.data() + (y * wide + x) * 4; }
};

Pixels widened(const Pixels& from, std::uint32_t wide, bool isCubic)
{
    Pixels to { wide, from.high, std::vector<std::uint8_t>(std::size_t { wide } * from.high * 4) };
    const auto columns = mixes(from.wide, wide, isCubic);
    std::uint8_t* out = to.bytes.data();
    for (std::size_t y = 0; y < from.high; ++y)
        for (const Mix& mix : columns) {
            mixPixel(
                mix, from.wide, [&](std::size_t x) { return from.at(x, y); }, out);
            out += 4;
        }
    return to;
}

Pixels heightened(const Pixels& from, std::uint32_t high, bool isCubic)
{
    Pixels to { from.wide, high, std::vector<std::uint8_t>(std::size_t { from.wide } * high * 4) };
    std::uint8_t* out = to.bytes.data();
    for (const Mix& mix : mixes(from.high, high, isCubic))
        for (std::size_t x = 0; x < from.wide; ++x) {
            mixPixel(
                mix, from.high, [&](std::size_t y) { return from.at(x, y); }, out);
            out += 4;
        }
    return to;
}

std::vector<std::uint8_t> nearest(const Bitmap& bitmap, PixelBox part, std::uint32_t wide, std::uint32_t high)
{
    std::vector<std::uint8_t> pixels(std::size_t { wide } * high * 4);
    std::uint8_t* out = pixels.data();
    for (std::uint64_t y = 0; y < high; ++y)
        for (std::uint64_t x = 0; x < wide; ++x, out += 4) {
            const std::uint64_t fromX = part.left + (2 * x + 1) * part.wide / (2 * std::uint64_t { wide });
            const std::uint64_t fromY = part.top + (2 * y + 1) * part.high / (2 * std::uint64_t { high });
            std::memcpy(out, bitmap.row(fromY) + fromX * 4, 4);
        }
    return pixels;
}

} // namespace

Bitmap resampled(const Bitmap& bitmap, PixelBox part, std::uint32_t wide, std::uint32_t high,
    ImageInterpolation interpolation)
{
    const auto made = [&](std::vector<std::uint8_t> pixels) {
        return Bitmap { wide, high, bitmap.hasAlpha, Data::adopt(std::move(pixels)) };
    };
    const bool isWhole = part.wide == bitmap.pixelsWide && part.high == bitmap.pixelsHigh;
    if (isWhole && wide == part.wide && high == part.high)
        return bitmap;
    if (interpolation == ImageInterpolation::None)
        return made(nearest(bitmap, part, wide, high));
    const std::uint32_t fewerWide = std::min(wide, part.wide);
    const std::uint32_t fewerHigh = std::min(high, part.high);
    AreaAverage average(part.wide, part.high, fewerWide, fewerHigh);
    for (std::uint32_t y = 0; y < part.high; ++y)
        average.addRow(bitmap.row(std::size_t { part.top } + y) + std::size_t { part.left } * 4);
    Pixels pixels { fewerWide, fewerHigh, average.take() };
    const bool isCubic = interpolation == ImageInterpolation::High;
    if (wide > fewerWide)
        pixels = widened(pixels, wide, isCubic);
    if (high > fewerHigh)
        pixels = heightened(pixels, high, isCubic);
    return made(std::move(pixels.bytes));
}

} // namespace caddis
