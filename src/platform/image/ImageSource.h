#pragma once

#include "platform/base/Value.h"
#include "platform/image/Bitmap.h"
#include "platform/image/ImageTypes.h"

#include <memory>
#include <optional>

namespace caddis {

namespace image {
class Source;
}

/// A file with one picture or more, read as far as each question needs.
///
/// The codecs are a shared module opened with the first source; without it every source is nil. Pictures
/// beyond the limits (platform/image/Limits.h) and damaged ones are nil, or what could be had of them.
class ImageSource {
public:
    /// Nil when the bytes are of no kind that can be read. The kind is found in the bytes alone.
    static std::optional<ImageSource> createWithData(const Data& data);
    static std::optional<ImageSource> createWithFile(const String& path);

    /// The number of pictures: frames of an animation, pages, sizes of an icon.
    std::size_t count() const;
    /// The kind of file as a content type: "public.jpeg", "com.compuserve.gif" …
    String type() const;
    std::optional<ImageInfo> infoAtIndex(std::size_t index) const;

    /// What the file says of the picture: "PixelWidth", "PixelHeight", "Depth", "ColorModel", "Orientation",
    /// "DPIWidth", "DPIHeight", "HasAlpha", "IsIndexed", "IsFloat", and the dictionaries "{JFIF}" and
    /// "{PNG}". What the file lacks is absent.
    Dictionary propertiesAtIndex(std::size_t index) const;

    /// The picture in full; upright.
    std::optional<Bitmap> imageAtIndex(std::size_t index) const;
    /// The picture made smaller where it is larger than the request says, never larger.
    std::optional<Bitmap> thumbnailAtIndex(std::size_t index, const ImageRequest& request) const;

private:
    static std::optional<ImageSource> madeOf(image::Source* source);
    explicit ImageSource(std::shared_ptr<const image::Source> source)
        : m_source(std::move(source))
    {
    }

    std::shared_ptr<const image::Source> m_source;
};

} // namespace caddis
