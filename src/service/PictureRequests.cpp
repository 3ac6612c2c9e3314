#include "service/PictureRequests.h"

#include "media/ImageDrawing.h"
#include "media/ImageFileTypes.h"
#include "media/ImageRepresentations.h"
#include "media/ImageThumbnails.h"
#include "platform/files/FileSystem.h"
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

std::optional<Image> valid(std::optional<Image> image)
{
    return image && isReallyValid(*image) ? std::move(image) : std::nullopt;
}

std::optional<Image> imageByReferencingFile(const std::optional<String>& path)
{
    return path ? valid(Image::initWithContentsOfFile(*path)) : std::nullopt;
}

// The bytes at the path itself are tried only where it leads to another file: they give the same picture
// otherwise, and may take long to give none.
std::optional<Image> imageAt(const String& path)
{
    const auto opened = pathToPDF(path);
    auto image = imageByReferencingFile(opened);
    if (image || opened == path)
        return image;
    const auto data = FileSystem::contentsOfFile(path);
    return data ? valid(Image::initWithData(*data)) : std::nullopt;
}

// Direct, or converted from PostScript now.
std::optional<PDFImageRep> pageOf(const Image& image)
{
    if (const auto* const page = imageRepOfClass<PDFImageRep>(image))
        return *page;
    const auto* const program = EPSImageRepOf(image);
    return program ? program->initializePDFImageRep() : std::nullopt;
}

std::optional<String> fileForText(const String& path, bool canUseSpotlight)
{
    return canUseSpotlight ? std::optional(path) : std::nullopt;
}

std::optional<Dictionary> textOf(const Image& image, const String& path, const ThumbnailRequest& request)
{
    const auto page = request.stringFromPDF ? pageOf(image) : std::nullopt;
    if (!page)
        return std::nullopt;
    const auto file = fileForText(path, request.canUseSpotlight && imageRepOfClass<PDFImageRep>(image));
    return _attributedStringWithPDF(false, page->PDFRepresentation(), file, PageSize::LeftOut);
}

Dictionary replyFor(Image& image, const String& path, const ThumbnailRequest& request)
{
    const auto side = static_cast<double>(request.maxThumbnailSize);
    const Size size = image.size();
    const Size pixels = pixelSize(image);
    const PDFThumb thumbnail = PDFThumbSize(image, { side, side });
    const auto text = textOf(image, path, request);
    image.setScales(true);
    image.setSize(pixels);
    auto reply = Dictionary::fromPairs({ { u"Size", stringFromSize(size) },
        { u"PixelSize", stringFromSize(pixels) }, { u"Alpha", hasAlpha(image) },
        { u"Thumbnail",
            TIFFRepresentationWithPixelSize(image, thumbnail.size,
                { .shouldAntialias = true, .interpolation = ImageInterpolation::High },
                thumbnail.fromRect) } });
    if (text) {
        for (const auto& [key, value] : *text)
            reply.set(key, value);
    }
    return reply;
}

} // namespace

std::optional<Data> PDFImageRepOfFile(const std::optional<String>& path)
{
    const auto image = path ? imageByReferencingFile(pathToPDF(*path)) : std::nullopt;
    const auto page = image ? pageOf(*image) : std::nullopt;
    return page ? std::optional(page->PDFRepresentation()) : std::nullopt;
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
    if (auto image = imageAt(*path))
        return replyFor(*image, *path, request);
    if (!request.stringFromPDF || !isRealPDFFile(*path))
        return std::nullopt;
    return _attributedStringWithPDF(false, FileSystem::contentsOfFile(*path),
        fileForText(*path, request.canUseSpotlight), PageSize::Wanted);
}

} // namespace caddis
