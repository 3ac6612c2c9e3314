#pragma once

#include "platform/base/Value.h"

#include <optional>

/// The request that shows documents of any kind.
namespace caddis {

/// A picture of the document as TIFF data, its longer side at most `maxThumbnailSize` pixels: a book's cover,
/// what the desktop shows, or with `asIcon` at least the icon of its kind. Nil: nothing can show it.
std::optional<Data> previewForFile(
    const std::optional<String>& path, std::int64_t maxThumbnailSize, bool asIcon);

} // namespace caddis
