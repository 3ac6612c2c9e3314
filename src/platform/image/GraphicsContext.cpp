#include "platform/image/GraphicsContext.h"

#include "platform/base/Exception.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace caddis {

namespace {

constexpr std::uint64_t MostPixels = 100'000'000;

std::uint32_t wholePixels(double side)
{
    return side > 0 && side < static_cast<double>(MostPixels) ? static_cast<std::uint32_t>(std::ceil(side))
                                                              : 0;
}

std::uint8_t times(unsigned value, unsigned alpha)
{
    return static_cast<std::uint8_t>((value * alpha + 127) / 255);
}

// Porter and Duff's "over" of pixels multiplied by alpha.
void drawOver(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels)
{
    for (; pixels > 0; --pixels, from += 4, to += 4) {
        const unsigned rest = 255U - from[3];
        for (std::size_t component = 0; component < 4; ++component)
            to[component]
                = static_cast<std::uint8_t>(from[component] + (rest ? times(to[component], rest) : 0));
    }
}

} // namespace

GraphicsContext::GraphicsContext(std::uint32_t wide, std::uint32_t high)
    : m_wide(wide)
    , m_high(high)
{
    if (wide == 0 || high == 0 || wide > MostPixels / high)
        throw Exception(u"NSImageCacheException"_s, u"Can't draw into an image of this size"_s);
    m_pixels.resize(std::size_t { wide } * high * 4);
}

GraphicsContext::GraphicsContext(Size size)
    : GraphicsContext(wholePixels(size.width), wholePixels(size.height))
{
}

GraphicsContext::Box GraphicsContext::boxOf(Rect rect) const
{
    constexpr double farthest = 1 << 30;
    const auto rounded = [=](double place) {
        return static_cast<std::int64_t>(std::floor(std::clamp(place, -farthest, farthest) + 0.5));
    };
    return { rounded(rect.x), rounded(m_high - rect.y - rect.height), rounded(rect.x + rect.width),
        rounded(m_high - rect.y) };
}

void GraphicsContext::fill(Rect rect, Color color)
{
    const Box box = boxOf(rect);
    const std::uint8_t pixel[] = { times(color.red, color.alpha), times(color.green, color.alpha),
        times(color.blue, color.alpha), color.alpha };
    for (auto y = std::max<std::int64_t>(box.top, 0); y < std::min<std::int64_t>(box.bottom, m_high); ++y)
        for (auto x = std::max<std::int64_t>(box.left, 0); x < std::min<std::int64_t>(box.right, m_wide); ++x)
            std::memcpy(&m_pixels[static_cast<std::size_t>(y * m_wide + x) * 4], pixel, sizeof pixel);
}

void GraphicsContext::draw(const Bitmap& bitmap, Rect from, Rect rect)
{
    const Box box = boxOf(rect);
    const auto within = [](double place, std::uint32_t most) {
        return static_cast<std::uint32_t>(
            std::clamp(std::floor(place + 0.5), 0.0, static_cast<double>(most)));
    };
    const double high = bitmap.pixelsHigh;
    const std::uint32_t left = within(from.x, bitmap.pixelsWide);
    const std::uint32_t top = within(high - from.y - from.height, bitmap.pixelsHigh);
    const PixelBox part { left, top, within(from.x + from.width, bitmap.pixelsWide) - left,
        within(high - from.y, bitmap.pixelsHigh) - top };
    const std::int64_t wide = box.right - box.left;
    const std::int64_t tall = box.bottom - box.top;
    if (part.wide == 0 || part.high == 0 || wide <= 0 || tall <= 0
        || wide > static_cast<std::int64_t>(MostPixels) / tall)
        return;
    const Bitmap drawn = resampled(
        bitmap, part, static_cast<std::uint32_t>(wide), static_cast<std::uint32_t>(tall), imageInterpolation);
    const auto first = std::max<std::int64_t>(box.left, 0);
    const auto last = std::min<std::int64_t>(box.right, m_wide);
    for (auto y = std::max<std::int64_t>(box.top, 0);
         first < last && y < std::min<std::int64_t>(box.bottom, m_high); ++y)
        drawOver(drawn.row(static_cast<std::size_t>(y - box.top)) + (first - box.left) * 4,
            &m_pixels[static_cast<std::size_t>(y * m_wide + first) * 4],
            static_cast<std::size_t>(last - first));
}

void GraphicsContext::flip()
{
    const std::size_t bytesPerRow = std::size_t { m_wide } * 4;
    for (std::uint32_t y = 0; y < m_high / 2; ++y) {
        std::uint8_t* row = m_pixels.data() + y * bytesPerRow;
        std::swap_ranges(row, row + bytesPerRow, m_pixels.data() + (m_high - 1 - y) * bytesPerRow);
    }
}

Bitmap GraphicsContext::take()
{
    bool hasAlpha = false;
    for (std::size_t at = 3; at < m_pixels.size() && !hasAlpha; at += 4)
        hasAlpha = m_pixels[at] != 255;
    return { m_wide, m_high, hasAlpha, Data::adopt(std::move(m_pixels)) };
}

} // namespace caddis
