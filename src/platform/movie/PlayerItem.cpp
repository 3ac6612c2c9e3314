#include "platform/movie/PlayerItem.h"

#include <algorithm>
#include <array>

namespace caddis {

namespace {

constexpr PixelFormatType code(const char (&text)[5])
{
    PixelFormatType value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<std::uint8_t>(text[i]);
    return value;
}

// 32ARGB has a number instead of a name.
constexpr std::array<PixelFormatType, 8> shownFormats { 32, code("BGRA"), code("ABGR"), code("RGBA"),
    code("2vuy"), code("420v"), code("420f"), code("y420") };

} // namespace

std::optional<Bitmap> PlayerItemVideoOutput::copyPixelBufferForItemTime(Time time) const
{
    if (std::find(shownFormats.begin(), shownFormats.end(), m_pixelFormatType) == shownFormats.end())
        return std::nullopt;
    return m_asset->copyImageAtTime(time);
}

void PlayerItem::seekToTime(Time time)
{
    if (time.isValid)
        m_currentTime = time;
}

} // namespace caddis
