#include "service/PreviewRequests.h"

#include "epub/EPUBParser.h"
#include "media/ImageSizes.h"
#include "media/QuickLookPreview.h"
#include "platform/image/TIFF.h"
#include "platform/preview/Picture.h"

namespace caddis {

namespace {

std::optional<Bitmap> coverOf(const String& book, std::int64_t maxThumbnailSize)
{
    const auto data = EPUBParser::coverDataForFile(book);
    const auto cover = data ? Picture::initWithData(*data) : std::nullopt;
    const auto side = static_cast<double>(maxThumbnailSize);
    return cover && side > 0 ? cover->bitmapWithPixelSize(thumb({ side, side }, cover->pixelSize()))
                             : std::nullopt;
}

} // namespace

std::optional<Data> previewForFile(
    const std::optional<String>& path, std::int64_t maxThumbnailSize, bool asIcon)
{
    if (!path)
        return std::nullopt;
    auto image = EPUBParser::isEPUBFile(*path) ? coverOf(*path, maxThumbnailSize) : std::nullopt;
    if (!image)
        image = OstraQuickLook::previewForFile(*path, maxThumbnailSize, asIcon);
    return image ? TIFFRepresentation(*image) : std::nullopt;
}

} // namespace caddis
