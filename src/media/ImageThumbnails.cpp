#include "media/ImageThumbnails.h"

#include "platform/image/ImageSource.h"

#include <algorithm>
#include <limits>

namespace caddis {

inline namespace NSImageOstraExtensions {

FileThumbnail thumbnailForFile(const String& path, std::int64_t maxPixelSize, ThumbnailOptions options)
{
    FileThumbnail thumbnail;
    const auto source = ImageSource::createWithFile(path);
    if (!source || source->count() == 0)
        return thumbnail;
    thumbnail.frames = source->count();
    if (maxPixelSize <= 0)
        return thumbnail;
    constexpr std::int64_t most = std::numeric_limits<std::uint32_t>::max();
    thumbnail.image = source->thumbnailAtIndex(0,
        { .maxPixelSize = static_cast<std::uint32_t>(std::min(maxPixelSize, most)),
            .allowsEmbedded = !options.alwaysFromImage,
            .isUpright = options.withTransform });
    if (thumbnail.image)
        thumbnail.properties = source->propertiesAtIndex(0);
    return thumbnail;
}

} // namespace NSImageOstraExtensions

} // namespace caddis
