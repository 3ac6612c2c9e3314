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
/// `caddisOpenImageFile`: the same of a file, whose pages are given back as they are read.
using OpenImageFile = Source*(const String& path);
/// `caddisWriteImage`. False: no pixels to write, or no writer for such files.
struct WriteRequest {
    BitmapImageFileType type = BitmapImageFileType::TIFF;
    Size points {}; ///< how large the picture is shown
    TIFFCompression compression = TIFFCompression::None;
    double factor = 1; ///< 0 for the smallest JPEG, 1 for the best
};
using WriteImage = bool(const Bitmap& bitmap, const WriteRequest& request, std::optional<Data>& out);

} // namespace caddis::image
