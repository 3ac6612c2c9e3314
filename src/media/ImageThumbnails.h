#pragma once

#include "platform/base/Value.h"
#include "platform/image/Bitmap.h"

#include <optional>

/// Thumbnails straight from files.
namespace caddis {

inline namespace NSImageOstraExtensions {

struct ThumbnailOptions {
    bool alwaysFromImage = false; ///< never the small picture that the file carries
    bool withTransform = false; ///< upright
};

struct FileThumbnail {
    std::optional<Bitmap> image;
    Dictionary properties; ///< of the first picture; empty without a thumbnail
    std::size_t frames = 0; ///< pictures in the file; 0 when it can't be read
};

/// The first picture of the file, its longer side at most `maxPixelSize`. No picture: an unreadable file, a
/// kind that is unknown, or a size of 0 or less.
FileThumbnail thumbnailForFile(const String& path, std::int64_t maxPixelSize, ThumbnailOptions options = {});

} // namespace NSImageOstraExtensions

} // namespace caddis
