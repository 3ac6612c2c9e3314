#pragma once

#include "platform/image/Bitmap.h"

#include <optional>

namespace caddis {

/// Previews of files of any kind, as the desktop has them.
inline namespace OstraQuickLook {

/// The file's preview, or with `asIcon` its icon where it has none, at most so large in pixels. Nil: an empty
/// path, or nothing to show.
std::optional<Bitmap> previewForFileWithSize(const String& path, Size size, bool asIcon);

/// The same in a square.
std::optional<Bitmap> previewForFile(const String& path, std::int64_t maxThumbnailSize, bool asIcon = false);

} // namespace OstraQuickLook

} // namespace caddis
