#pragma once

#include "platform/base/Value.h"

#include <optional>

/// The requests that turn pictures into thumbnails and PDF.
namespace caddis {

/// The picture in a PDF or PostScript file as PDF data. Nil: the file can't be read, holds a picture of
/// another kind, or one without pages.
std::optional<Data> PDFImageRepOfFile(const std::optional<String>& path);

struct ThumbnailRequest {
    std::int64_t maxThumbnailSize = 0; ///< of the longer side, in pixels; a page of 0 or less is one pixel
    bool alwaysFromImage = false; ///< never the small picture that a file carries
    bool stringFromPDF = false; ///< the text, too, where the picture is a page
    bool canUseSpotlight = false;
};

/// A thumbnail as TIFF, and what is known of the picture. Two kinds of reply:
///
///     "Properties", "Thumbnail", "Animated" (true or absent)           a bitmap, unless stringFromPDF
///     "Size" (points), "PixelSize", "Alpha", "Thumbnail", and the      everything else
///     keys of _attributedStringWithPDF for a page, if stringFromPDF
///
/// A PDF that can't be drawn still has its text, if stringFromPDF. Nil: no picture.
std::optional<Dictionary> imageWithContentsOfFile(
    const std::optional<String>& path, const ThumbnailRequest& request);

} // namespace caddis
