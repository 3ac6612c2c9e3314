#include "service/PictureRequests.h"

#include "media/ImageFileTypes.h"
#include "media/ImageSizes.h"
#include "media/ImageThumbnails.h"
#include "platform/files/FileSystem.h"
#include "platform/image/TIFF.h"
#include "platform/preview/Picture.h"
#include "service/PDFRequests.h"

namespace caddis {

namespace {

std::optional<Dictionary> fastThumbnail(const String& path, const ThumbnailRequest& request)
{
    const FileThumbnail thumbnail = thumbnailForFile(path, request.maxThumbnailSize,
        { .alwaysFromImage = request.alwaysFromImage, .withTransform = true });
    if (!thumbnail.image)
        return std::nullopt;
    auto reply = Dictionary::fromPairs(
        { { u"Properties", thumbnail.properties }, { u"Thumbnail", TIFFRepresentation(*thumbnail.image) } });
    if (thumbnail.frames >= 2 && path.view().ends_with(u".gif"))
        reply.set(u"Animated"_s, Value(true));
    return reply;
}

// The bytes at the path itself are tried only where it leads to another file: they give the same picture
// otherwise, and may take long to give none.
std::optional<Picture> pictureAt(const String& path)
{
    const auto opened = pathToPDF(path);
    auto picture = Picture::initByReferencingFile(opened);
    if (picture || opened == path)
        return picture;
    const auto data = FileSystem::contentsOfFile(path);
    return data ? Picture::initWithData(*data) : std::nullopt;
}

std::optional<String> fileForText(const String& path, bool canUseSpotlight)
{
    return canUseSpotlight ? std::optional(path) : std::nullopt;
}

std::optional<Dictionary> textOf(const Picture& picture, const String& path, const ThumbnailRequest& request)
{
    const auto data = request.stringFromPDF ? picture.PDFRepresentation() : std::nullopt;
    if (!data)
        return std::nullopt;
    const auto file = fileForText(path, request.canUseSpotlight && picture.isDirectPDF());
    return _attributedStringWithPDF(false, data, file, PageSize::LeftOut);
}

Dictionary replyFor(const Picture& picture, const String& path, const ThumbnailRequest& request)
{
    const auto side = static_cast<double>(request.maxThumbnailSize);
    const PDFThumb thumb = PDFThumbSize({ side, side }, picture.pixelSize(), picture.isPDFImage());
    const auto bitmap = picture.bitmapWithPixelSize(thumb.size, thumb.fromRect);
    const auto text = textOf(picture, path, request);
    auto reply = Dictionary::fromPairs({ { u"Size", stringFromSize(picture.size()) },
        { u"PixelSize", stringFromSize(picture.pixelSize()) }, { u"Alpha", picture.hasAlpha() },
        { u"Thumbnail", bitmap ? TIFFRepresentation(*bitmap) : std::nullopt } });
    if (text) {
        for (const auto& [key, value] : *text)
            reply.set(key, value);
    }
    return reply;
}

} // namespace

std::optional<Data> PDFImageRepOfFile(const std::optional<String>& path)
{
    const auto picture = path ? Picture::initByReferencingFile(pathToPDF(*path)) : std::nullopt;
    return picture ? picture->PDFRepresentation() : std::nullopt;
}

std::optional<Dictionary> imageWithContentsOfFile(
    const std::optional<String>& path, const ThumbnailRequest& request)
{
    if (!path)
        return std::nullopt;
    if (!request.stringFromPDF) {
        if (auto reply = fastThumbnail(*path, request))
            return reply;
    }
    if (const auto picture = pictureAt(*path))
        return replyFor(*picture, *path, request);
    if (!request.stringFromPDF || !isRealPDFFile(*path))
        return std::nullopt;
    return _attributedStringWithPDF(false, FileSystem::contentsOfFile(*path),
        fileForText(*path, request.canUseSpotlight), PageSize::Wanted);
}

} // namespace caddis
