#include "platform/image/engine/Shrinker.h"

#include "platform/image/engine/Colours.h"

#include <algorithm>
#include <cstring>

namespace caddis::image {

namespace {

std::uint8_t product(unsigned left, unsigned right)
{
    return static_cast<std::uint8_t>((left * right + 127) / 255);
}

void multiply(const std::uint8_t* pixels, std::vector<std::uint8_t>& out)
{
    for (std::size_t at = 0; at < out.size(); at += 4) {
        const unsigned alpha = pixels[at + 3];
        for (std::size_t component = 0; component < 3; ++component)
            out[at + component]
                = alpha == 255 ? pixels[at + component] : product(pixels[at + component], alpha);
        out[at + 3] = pixels[at + 3];
    }
}

} // namespace

void Shrinker::begin(std::uint32_t wide, std::uint32_t high, PixelLayout layout)
{
    const bool isEnough = wide >= m_target.wide && high >= m_target.high;
    if (!isEnough || !limits::allows(wide, high)
        || !limits::allows(m_target.wide, m_target.high, limits::MostPixelsInMemory))
        throw Broken();
    m_wide = wide;
    m_layout = layout;
    m_average.emplace(wide, high, m_target.wide, m_target.high);
    m_row.resize(std::size_t { wide } * 4);
}

void Shrinker::row(const std::uint8_t* pixels)
{
    if (++m_rows % 64 == 0 && std::chrono::steady_clock::now() > m_start + limits::MostTime)
        throw Broken();
    if (m_layout != PixelLayout::Straight) {
        m_average->addRow(pixels);
        return;
    }
    multiply(pixels, m_row);
    m_average->addRow(m_row.data());
}

std::optional<Bitmap> Shrinker::take(const std::optional<Data>& profile)
{
    if (m_rows == 0)
        return std::nullopt;
    const bool hasAlpha = m_layout == PixelLayout::Straight || m_layout == PixelLayout::Premultiplied;
    auto pixels = m_average->take();
    makeSRGB(pixels, m_layout, profile);
    return Bitmap { m_target.wide, m_target.high, hasAlpha, Data::adopt(std::move(pixels)) };
}

Bitmap oriented(const Bitmap& bitmap, int orientation)
{
    if (orientation < 2 || orientation > 8)
        return bitmap;
    const bool isTurned = orientation >= 5;
    const bool isMirrored = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool isFlipped = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const std::size_t wide = isTurned ? bitmap.pixelsHigh : bitmap.pixelsWide;
    const std::size_t high = isTurned ? bitmap.pixelsWide : bitmap.pixelsHigh;
    std::vector<std::uint8_t> pixels(bitmap.pixels.size());
    for (std::size_t y = 0; y < high; ++y)
        for (std::size_t x = 0; x < wide; ++x) {
            const std::size_t column = isTurned ? y : x;
            const std::size_t row = isTurned ? x : y;
            const std::size_t fromX = isMirrored ? bitmap.pixelsWide - 1 - column : column;
            const std::size_t fromY = isFlipped ? bitmap.pixelsHigh - 1 - row : row;
            std::memcpy(&pixels[(y * wide + x) * 4], bitmap.row(fromY) + fromX * 4, 4);
        }
    return { static_cast<std::uint32_t>(wide), static_cast<std::uint32_t>(high), bitmap.hasAlpha,
        Data::adopt(std::move(pixels)) };
}

} // namespace caddis::image
