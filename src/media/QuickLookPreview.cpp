#include "media/QuickLookPreview.h"

#include "media/ImageRepresentations.h"
#include "platform/preview/QuickLook.h"

namespace caddis {

inline namespace OstraQuickLook {

std::optional<Image> previewForFileWithSize(const String& path, Size size, bool asIcon)
{
    if (path.isEmpty())
        return std::nullopt;
    const auto bitmap = QLThumbnailImageCreate(URL::fileURLWithPath(path), size, { .iconMode = asIcon });
    return bitmap ? imageWithCGImageRef(*bitmap) : std::nullopt;
}

std::optional<Image> previewForFile(const String& path, std::int64_t maxThumbnailSize, bool asIcon)
{
    const auto side = static_cast<double>(maxThumbnailSize);
    return previewForFileWithSize(path, { side, side }, asIcon);
}

} // namespace OstraQuickLook

} // namespace caddis
