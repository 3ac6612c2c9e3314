#pragma once

#include "platform/image/Image.h"

namespace caddis {

/// Previews of files of any kind, as the desktop has them.
inline namespace OstraQuickLook {

/// The file's preview, or with `asIcon` its icon where it has none, at most so large in pixels, a point each.
/// Nil: an empty path, or nothing to show.
std::optional<Image> previewForFileWithSize(const String& path, Size size, bool asIcon);

/// The same in a square.
std::optional<Image> previewForFile(const String& path, std::int64_t maxThumbnailSize, bool asIcon = false);

} // namespace OstraQuickLook

} // namespace caddis
