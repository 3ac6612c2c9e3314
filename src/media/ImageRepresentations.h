#pragma once

#include "media/ImageSizes.h"
#include "platform/image/Image.h"

/// What an image consists of, and which of its forms to save.
namespace caddis {

inline namespace NSImageOstraExtensions {

/// The pixels of the representation that is widest in pixels; the size in points where none has any.
Size pixelSize(const Image& image);
inline Size thumbSize(const Image& image, Size maximum) { return thumb(maximum, pixelSize(image)); }
inline Size scaledSize(const Image& image, double factor) { return scaledSize(pixelSize(image), factor); }
/// Width by height; 0 without a height.
double aspectRatio(const Image& image);

/// Whether a representation is no bitmap, or a bitmap with alpha.
bool hasAlpha(const Image& image);
/// Whether there is a size and something to draw.
bool isReallyValid(const Image& image);

/// Null where the image has no such representation.
template <typename Rep> const Rep* imageRepOfClass(const Image& image)
{
    for (const ImageRep& rep : image.representations())
        if (const Rep* const found = std::get_if<Rep>(&rep))
            return found;
    return nullptr;
}
inline const BitmapImageRep* bitmapImageRep(const Image& image)
{
    return imageRepOfClass<BitmapImageRep>(image);
}
inline const EPSImageRep* EPSImageRepOf(const Image& image) { return imageRepOfClass<EPSImageRep>(image); }
inline const PICTImageRep* PICTImageRepOf(const Image& image) { return imageRepOfClass<PICTImageRep>(image); }
/// The first PDF representation, else what the first EPS representation has been converted to.
std::optional<PDFImageRep> PDFImageRepOf(const Image& image);

/// PDF or EPS.
bool isPDFImage(const Image& image);
inline bool isEPSImage(const Image& image) { return EPSImageRepOf(image) != nullptr; }
inline bool isPICTImage(const Image& image) { return PICTImageRepOf(image) != nullptr; }
inline bool isBitmapImage(const Image& image) { return bitmapImageRep(image) != nullptr; }
/// Whether the image can be drawn at any size without loss.
bool isScalableImage(const Image& image);

/// The thumbnail of the image: a very tall page shows its top square.
inline PDFThumb PDFThumbSize(const Image& image, Size maximum)
{
    return PDFThumbSize(maximum, pixelSize(image), isPDFImage(image));
}

/// The first bitmap representation, or one made of the image's TIFF data.
std::optional<BitmapImageRep> createBitmapImageRepIfNecessary(const Image& image);

/// The image in its own form: PDF, EPS or PICT where it has it, else LZW-compressed TIFF.
struct BestRepresentation {
    std::optional<Data> data; ///< nil when it can't be made
    String fileExtension;
};
BestRepresentation bestRepresentationAndFileExtension(const Image& image);
inline std::optional<Data> bestRepresentation(const Image& image)
{
    return bestRepresentationAndFileExtension(image).data;
}
/// The same extension, without making the data.
String pathExtensionForBestRepresentation(const Image& image);

/// The image as a file of that kind. Nil: there is nothing to draw, or no writer for the kind.
std::optional<Data> representationUsingType(const Image& image, BitmapImageFileType type, double compression);

/// An image with one point for each pixel; nil for a zero side.
std::optional<Image> imageWithCGImageRef(const Bitmap& bitmap);

} // namespace NSImageOstraExtensions

inline namespace NSBitmapImageRepOstraExtensions {

std::optional<Data> representationUsingType(
    const BitmapImageRep& rep, BitmapImageFileType type, double compression);
/// The raw pixels; nil when they can't be read.
std::optional<Data> data(const BitmapImageRep& rep);

} // namespace NSBitmapImageRepOstraExtensions

/// Of EPS representations.
inline namespace PDF {

/// The PDF that an EPS representation was converted to; nil until it has been.
std::optional<Data> PDFRepresentation(const EPSImageRep& rep);

} // namespace PDF

} // namespace caddis
