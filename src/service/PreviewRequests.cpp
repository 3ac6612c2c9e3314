#include "service/PreviewRequests.h"

#include "epub/EPUBParser.h"
#include "media/ImageDrawing.h"
#include "media/QuickLookPreview.h"

namespace caddis {

namespace {

std::optional<Image> coverOf(const String& book, std::int64_t maxThumbnailSize)
{
    auto cover = EPUBParser::coverForFile(book);
    const auto side = static_cast<double>(maxThumbnailSize);
    return cover ? thumbForSize(*cover, { side, side }) : std::nullopt;
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
    return image ? image->TIFFRepresentation() : std::nullopt;
}

} // namespace caddis
