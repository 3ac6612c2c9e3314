#include "platform/preview/Picture.h"

#include "platform/files/MappedFile.h"
#include "platform/postscript/PostScript.h"

namespace caddis {

namespace {

constexpr double PointsPerInch = 72;
constexpr std::chrono::seconds DrawingTimeout { 8 };

Size sizeInPoints(Size pixels, const ImageInfo& info)
{
    const auto points
        = [](double count, double dpi) { return dpi > 0 ? count * PointsPerInch / dpi : count; };
    const bool isTurned = info.isTurned();
    return { points(pixels.width, isTurned ? info.dpiHeight : info.dpiWidth),
        points(pixels.height, isTurned ? info.dpiWidth : info.dpiHeight) };
}

std::optional<Bitmap> drawn(const PDFImageRep& page, std::uint32_t wide, std::uint32_t high, Rect fromRect)
{
    const auto raster = page.raster({ .source = fromRect == Rect() ? std::nullopt : std::optional(fromRect),
        .pixelsWide = wide,
        .pixelsHigh = high,
        .deadline = std::chrono::steady_clock::now() + DrawingTimeout });
    if (!raster)
        return std::nullopt;
    return Bitmap { raster->pixelsWide, raster->pixelsHigh, false, raster->pixels };
}

} // namespace

std::optional<Picture> Picture::initByReferencingFile(const std::optional<String>& path)
{
    const auto data = path ? MappedFile::open(*path) : std::nullopt;
    return data ? initWithData(*data) : std::nullopt;
}

std::optional<Picture> Picture::initWithData(const Data& data)
{
    if (auto source = ImageSource::createWithData(data)) {
        const auto info = source->count() > 0 ? source->infoAtIndex(0) : std::nullopt;
        return info ? std::optional(Picture(*std::move(source), *info)) : std::nullopt;
    }
    const bool isConverted = isPostScript(data);
    const auto pdf = isConverted ? PDFWithPostScript(data) : data;
    const auto page = pdf ? PDFImageRep::imageRepWithData(*pdf) : std::nullopt;
    const bool isReallyValid = page && page->size().width > 0 && page->size().height > 0;
    return isReallyValid ? std::optional(Picture(*page, isConverted)) : std::nullopt;
}

Picture::Picture(const PDFImageRep& page, bool isConverted)
    : m_page(page)
    , m_isConverted(isConverted)
    , m_pixelSize(page.size())
    , m_size(m_pixelSize)
{
}

Picture::Picture(ImageSource source, const ImageInfo& info)
    : m_source(std::move(source))
    , m_hasAlpha(info.hasAlpha)
    , m_pixelSize { static_cast<double>(info.isTurned() ? info.pixelsHigh : info.pixelsWide),
        static_cast<double>(info.isTurned() ? info.pixelsWide : info.pixelsHigh) }
    , m_size(sizeInPoints(m_pixelSize, info))
{
}

std::optional<Data> Picture::PDFRepresentation() const
{
    return m_page ? std::optional(m_page->PDFRepresentation()) : std::nullopt;
}

std::optional<Bitmap> Picture::bitmapWithPixelSize(Size pixels, Rect fromRect) const
{
    if (!(pixels.width >= 1) || !(pixels.height >= 1))
        return std::nullopt;
    const auto wide = static_cast<std::uint32_t>(pixels.width);
    const auto high = static_cast<std::uint32_t>(pixels.height);
    return m_page ? drawn(*m_page, wide, high, fromRect)
                  : m_source->thumbnailAtIndex(0, { .maxPixelSize = std::max(wide, high) });
}

} // namespace caddis
