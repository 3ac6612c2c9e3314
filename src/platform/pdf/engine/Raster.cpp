#include "platform/pdf/engine/PopplerDocument.h"

#include <Page.h>
#include <SplashOutputDev.h>
#include <splash/SplashBitmap.h>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace caddis::pdf {

namespace {

// Where `box` lies when the page is shown turned clockwise, from the lower left of the shown page.
Rect shown(Rect box, Rect media, int rotation)
{
    const double left = box.x - media.x;
    const double bottom = box.y - media.y;
    const double right = media.width - left - box.width;
    const double top = media.height - bottom - box.height;
    switch (rotation) {
    case 90:
        return { bottom, right, box.height, box.width };
    case 180:
        return { right, top, box.width, box.height };
    case 270:
        return { top, left, box.height, box.width };
    default:
        return { left, bottom, box.width, box.height };
    }
}

bool isLate(void* deadline)
{
    const auto& wanted = *static_cast<const PDFDeadline*>(deadline);
    return wanted && std::chrono::steady_clock::now() >= *wanted;
}

// Splash keeps blue first.
void makeRedFirst(unsigned char* pixels, std::size_t count)
{
    for (unsigned char* pixel = pixels; pixel != pixels + count * 4; pixel += 4) {
        std::swap(pixel[0], pixel[2]);
        pixel[3] = 255;
    }
}

} // namespace

// The page at the resolution at which `source` becomes the wanted pixels, and of it only the slice that shows
// them.
std::optional<PDFRaster> PopplerDocument::draw(std::size_t page, const PDFRasterRequest& request) const
{
    if (!hasPage(page))
        return std::nullopt;
    const Rect media = bounds(page, PDFDisplayBox::Media);
    const Rect box = shown(bounds(page, request.box), media, rotation(page));
    const Rect whole = shown(media, media, rotation(page));
    const Rect source = request.source.value_or(Rect { 0, 0, box.width, box.height });
    if (!(source.width > 0) || !(source.height > 0))
        return std::nullopt;
    const double scaleX = request.pixelsWide / source.width;
    const double scaleY = request.pixelsHigh / source.height;
    const double left = (box.x + source.x) * scaleX;
    const double top = (whole.height - box.y - source.y - source.height) * scaleY;
    constexpr double farthest = 1 << 24;
    if (!(std::fabs(left) < farthest) || !(std::fabs(top) < farthest) || whole.width * scaleX > farthest
        || whole.height * scaleY > farthest)
        return std::nullopt;

    const auto component
        = [&](int shift) { return static_cast<unsigned char>(request.background >> shift & 0xFF); };
    SplashColor paper = { component(0), component(8), component(16), 255 };
    SplashOutputDev device(splashModeXBGR8, 4, false, paper);
    device.startDoc(m_document.get());
    PDFDeadline deadline = request.deadline;
    m_document->displayPageSlice(&device, static_cast<int>(page) + 1, 72 * scaleX, 72 * scaleY, 0, true,
        false, false, static_cast<int>(std::lround(left)), static_cast<int>(std::lround(top)),
        static_cast<int>(request.pixelsWide), static_cast<int>(request.pixelsHigh), isLate, &deadline);

    const std::unique_ptr<SplashBitmap> bitmap(device.takeBitmap());
    const std::size_t count = std::size_t { request.pixelsWide } * request.pixelsHigh;
    if (!bitmap || bitmap->getWidth() != static_cast<int>(request.pixelsWide)
        || bitmap->getHeight() != static_cast<int>(request.pixelsHigh) || isLate(&deadline))
        return std::nullopt;
    makeRedFirst(bitmap->getDataPtr(), count);
    const char* pixels = reinterpret_cast<const char*>(bitmap->getDataPtr());
    return PDFRaster { request.pixelsWide, request.pixelsHigh, Data::copyOf({ pixels, count * 4 }) };
}

} // namespace caddis::pdf
