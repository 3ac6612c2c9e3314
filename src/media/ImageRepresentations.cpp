#include "media/ImageRepresentations.h"

#include <algorithm>

namespace caddis {

namespace {

bool hasPixelsWithAlpha(const ImageRep& rep)
{
    const auto* const bitmap = std::get_if<BitmapImageRep>(&rep);
    return !bitmap || bitmap->hasAlpha();
}

} // namespace

inline namespace NSImageOstraExtensions {

Size pixelSize(const Image& image)
{
    Size widest;
    for (const ImageRep& rep : image.representations())
        if (const Size size = pixelSizeOf(rep); size.width > widest.width)
            widest = size;
    return widest == Size() ? image.size() : widest;
}

double aspectRatio(const Image& image)
{
    return image.size().height > 0 ? image.size().width / image.size().height : 0;
}

bool hasAlpha(const Image& image)
{
    const auto& reps = image.representations();
    return std::any_of(reps.begin(), reps.end(), hasPixelsWithAlpha);
}

bool isReallyValid(const Image& image)
{
    return image.size().width > 0 && image.size().height > 0 && !image.representations().empty();
}

std::optional<PDFImageRep> PDFImageRepOf(const Image& image)
{
    if (const auto* const pdf = imageRepOfClass<PDFImageRep>(image))
        return *pdf;
    const auto* const eps = EPSImageRepOf(image);
    return eps ? eps->PDFImageRep() : std::nullopt;
}

bool isPDFImage(const Image& image) { return imageRepOfClass<PDFImageRep>(image) || isEPSImage(image); }

bool isScalableImage(const Image& image) { return isPDFImage(image) || isPICTImage(image); }

std::optional<BitmapImageRep> createBitmapImageRepIfNecessary(const Image& image)
{
    if (const auto* const rep = bitmapImageRep(image))
        return *rep;
    const auto tiff = image.TIFFRepresentation();
    const auto drawn = tiff ? Image::initWithData(*tiff) : std::nullopt;
    return drawn ? std::optional(*bitmapImageRep(*drawn)) : std::nullopt;
}

BestRepresentation bestRepresentationAndFileExtension(const Image& image)
{
    const String extension = pathExtensionForBestRepresentation(image);
    if (const auto* const pdf = imageRepOfClass<PDFImageRep>(image))
        return { pdf->PDFRepresentation(), extension };
    if (const auto* const eps = EPSImageRepOf(image))
        return { eps->EPSRepresentation(), extension };
    if (const auto* const pict = PICTImageRepOf(image))
        return { pict->PICTRepresentation, extension };
    return { image.TIFFRepresentation(TIFFCompression::LZW), extension };
}

String pathExtensionForBestRepresentation(const Image& image)
{
    if (imageRepOfClass<PDFImageRep>(image))
        return u"pdf"_s;
    return isEPSImage(image) ? u"eps"_s : isPICTImage(image) ? u"pict"_s : u"tiff"_s;
}

std::optional<Data> representationUsingType(const Image& image, BitmapImageFileType type, double compression)
{
    const auto* const best
        = image.bestRepresentationForRect({ 0, 0, image.size().width, image.size().height });
    const auto* const bitmap = best ? std::get_if<BitmapImageRep>(best) : nullptr;
    const auto rep = bitmap ? std::optional(*bitmap) : createBitmapImageRepIfNecessary(image);
    return rep ? representationUsingType(*rep, type, compression) : std::nullopt;
}

std::optional<Image> imageWithCGImageRef(const Bitmap& bitmap)
{
    if (bitmap.pixelsWide == 0 || bitmap.pixelsHigh == 0)
        return std::nullopt;
    Image image(bitmap.size());
    image.addRepresentation(BitmapImageRep(bitmap, bitmap.size()));
    return image;
}

} // namespace NSImageOstraExtensions

inline namespace NSBitmapImageRepOstraExtensions {

std::optional<Data> representationUsingType(
    const BitmapImageRep& rep, BitmapImageFileType type, double compression)
{
    const auto bitmap = rep.bitmap();
    return bitmap ? representationOfBitmap(*bitmap, type, compression) : std::nullopt;
}

std::optional<Data> data(const BitmapImageRep& rep)
{
    const auto bitmap = rep.bitmap();
    return bitmap ? std::optional(bitmap->pixels) : std::nullopt;
}

} // namespace NSBitmapImageRepOstraExtensions

inline namespace PDF {

std::optional<Data> PDFRepresentation(const EPSImageRep& rep)
{
    const auto pdf = rep.PDFImageRep();
    return pdf ? std::optional(pdf->PDFRepresentation()) : std::nullopt;
}

} // namespace PDF

} // namespace caddis
