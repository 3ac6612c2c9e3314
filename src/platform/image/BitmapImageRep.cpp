#include "platform/image/BitmapImageRep.h"

#include <algorithm>
#include <cmath>

namespace caddis {

BitmapImageRep::BitmapImageRep(Bitmap bitmap, Size size)
    : m_pixelsWide(bitmap.pixelsWide)
    , m_pixelsHigh(bitmap.pixelsHigh)
    , m_hasAlpha(bitmap.hasAlpha)
    , m_size(size)
    , m_bitmap(std::move(bitmap))
{
}

std::optional<BitmapImageRep> BitmapImageRep::imageRepWithSource(const ImageSource& source, std::size_t index)
{
    const auto info = source.infoAtIndex(index);
    if (!info)
        return std::nullopt;
    const auto points = [](std::uint32_t pixels, double dpi) { return dpi > 0 ? pixels * 72 / dpi : pixels; };
    BitmapImageRep rep;
    rep.m_pixelsWide = info->pixelsWide;
    rep.m_pixelsHigh = info->pixelsHigh;
    rep.m_size = { points(info->pixelsWide, info->dpiWidth), points(info->pixelsHigh, info->dpiHeight) };
    if (info->isTurned()) {
        std::swap(rep.m_pixelsWide, rep.m_pixelsHigh);
        std::swap(rep.m_size.width, rep.m_size.height);
    }
    rep.m_hasAlpha = info->hasAlpha;
    rep.m_source = source;
    rep.m_index = index;
    return rep;
}

std::optional<Bitmap> BitmapImageRep::bitmap() const
{
    return m_bitmap ? m_bitmap : m_source->imageAtIndex(m_index);
}

std::optional<Bitmap> BitmapImageRep::bitmapOfAtLeast(Size wanted) const
{
    const double part = std::max(wanted.width / m_pixelsWide, wanted.height / m_pixelsHigh);
    const double longest = std::max(m_pixelsWide, m_pixelsHigh);
    if (m_bitmap || !(part < 1))
        return bitmap();
    // One more than needed: the shorter side is rounded down.
    const auto side = static_cast<std::uint32_t>(std::min(std::ceil(part * longest) + 1, longest));
    auto smaller = m_source->thumbnailAtIndex(m_index, { .maxPixelSize = side });
    // What can't be drawn small can't be drawn at all, and to find out would take the memory of all pixels.
    const bool isEnough
        = !smaller || (smaller->pixelsWide >= wanted.width && smaller->pixelsHigh >= wanted.height);
    return isEnough ? smaller : bitmap();
}

} // namespace caddis
