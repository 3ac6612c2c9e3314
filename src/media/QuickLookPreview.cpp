#include "media/QuickLookPreview.h"

#include "platform/preview/QuickLook.h"

namespace caddis {

inline namespace OstraQuickLook {

std::optional<Bitmap> previewForFileWithSize(const String& path, Size size, bool asIcon)
{
    if (path.isEmpty())
        return std::nullopt;
    return QLThumbnailImageCreate(URL::fileURLWithPath(path), size, { .iconMode = asIcon });
}

std::optional<Bitmap> previewForFile(const String& path, std::int64_t maxThumbnailSize, bool asIcon)
{
    const auto side = static_cast<double>(maxThumbnailSize);
    return previewForFileWithSize(path, { side, side }, asIcon);
}

} // namespace OstraQuickLook

} // namespace caddis
