#include "platform/image/ImageSource.h"

#include "platform/image/ImageEngine.h"
#include "platform/image/ImageModule.h"

namespace caddis {

std::optional<ImageSource> ImageSource::madeOf(image::Source* source)
{
    return source ? std::optional(ImageSource(std::shared_ptr<const image::Source>(source))) : std::nullopt;
}

std::optional<ImageSource> ImageSource::createWithData(const Data& data)
{
    auto* const openImage = image::module().entry<image::OpenImage>("caddisOpenImage");
    return madeOf(openImage ? openImage(data) : nullptr);
}

std::optional<ImageSource> ImageSource::createWithFile(const String& path)
{
    auto* const openImage = image::module().entry<image::OpenImageFile>("caddisOpenImageFile");
    return madeOf(openImage ? openImage(path) : nullptr);
}

std::size_t ImageSource::count() const { return m_source->count(); }

String ImageSource::type() const { return m_source->type(); }

std::optional<ImageInfo> ImageSource::infoAtIndex(std::size_t index) const { return m_source->info(index); }

Dictionary ImageSource::propertiesAtIndex(std::size_t index) const { return m_source->properties(index); }

std::optional<Bitmap> ImageSource::imageAtIndex(std::size_t index) const
{
    return m_source->image(index, {});
}

std::optional<Bitmap> ImageSource::thumbnailAtIndex(std::size_t index, const ImageRequest& request) const
{
    return m_source->image(index, request);
}

} // namespace caddis
