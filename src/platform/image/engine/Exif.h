#pragma once

#include "platform/base/Range.h"

#include <optional>
#include <string_view>

namespace caddis::image {

/// The few entries of an Exif block (a TIFF structure without pictures) that reading a picture needs.
/// Exif 2.32, 4.6.
struct ExifSummary {
    int orientation = 0; ///< 0: none
    double dpiWidth = 0;
    double dpiHeight = 0;
    std::optional<Range> thumbnail; ///< a JPEG file within the block
};

ExifSummary readExif(std::string_view block);

} // namespace caddis::image
