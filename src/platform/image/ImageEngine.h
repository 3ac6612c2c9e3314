#pragma once

#include "platform/base/Value.h"
#include "platform/image/Bitmap.h"
#include "platform/image/ImageTypes.h"

#include <optional>

/// The boundary between the classes in this folder and the shared module `caddis-image`, which holds the
/// codecs. Only our own types cross it, and no exceptions.
namespace caddis::image {

/// A file with pictures.
class Source {
public:
    virtual ~Source() = default;

    virtual String type() const = 0;
    virtual std::size_t count() const = 0;
    /// What the picture's header says; nil when there is none that can be read.
    virtual std::optional<ImageInfo> info(std::size_t index) const = 0;
    virtual Dictionary properties(std::size_t index) const = 0;
    virtual std::optional<Bitmap> image(std::size_t index, const ImageRequest& request) const = 0;
};

/// The module's entries. `caddisOpenImage`: null when the bytes are of no kind that can be read.
using OpenImage = Source*(const Data& data);
/// `caddisWriteTIFF`. False: no pixels to write.
using WriteTIFF
    = bool(const Bitmap& bitmap, Size points, TIFFCompression compression, std::optional<Data>& out);

} // namespace caddis::image
