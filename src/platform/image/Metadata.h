#pragma once

#include "platform/base/Value.h"

#include <optional>
#include <string_view>

/// The module caddis-image-metadata: Exif, IPTC and the previews of camera raw files, all by Exiv2.
namespace caddis::image {

/// What a camera raw file carries to be shown.
struct RawPreviews {
    Data large; ///< a JPEG or TIFF file
    std::optional<Data> small; ///< another, at least 160 pixels long
    int orientation = 0; ///< 1 to 8; 0: the file doesn't say
};

/// `caddisReadMetadata`: the dictionaries "{TIFF}", "{Exif}", "{GPS}" and "{IPTC}", as far as there is
/// anything to put into them. May throw.
using ReadMetadata = Dictionary(const Data& file);
/// `caddisReadRawPreviews`: nil when there is none. May throw.
using ReadRawPreviews = std::optional<RawPreviews>(const Data& file);

} // namespace caddis::image
