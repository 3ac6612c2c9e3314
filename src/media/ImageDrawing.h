#pragma once

#include "platform/image/Image.h"

/// Drawing images, and making images and bitmaps of other sizes of them.
namespace caddis {

struct DrawingQuality {
    bool shouldAntialias = true;
    ImageInterpolation interpolation = ImageInterpolation::Default;
};

/// Draws the image's best representation into the whole rectangle: what has no pixels of its own upon white,
/// a bitmap with alpha upon the image's background colour.
void drawImageInRect(const Image& image, GraphicsContext& context, Rect rect);

inline namespace NSImageOstraExtensions {

/// A new image of that size, the given one (none: nothing) drawn into all of it.
///
/// Nil: the drawing failed, which is logged; no size, for example.
std::optional<Image> initWithImage(const Image* image, Size size, bool flipped);
inline std::optional<Image> imageWithSize(const Image& image, Size size)
{
    return initWithImage(&image, size, false);
}

/// Makes the image scale, and gives it the size that thumbnails of at most `maximum` have.
Size scaleToThumbSize(Image& image, Size maximum);
/// Makes the image scale; a new image of the size that thumbnails of at most `maximum` have.
std::optional<Image> thumbForSize(Image& image, Size maximum);

/// The image in the middle of a square, the rest of which is clear. Nil without a size.
std::optional<Image> squareImage(const Image& image);

/// The image as a bitmap image, through its TIFF data.
std::optional<Image> bitmapImage(const Image& image);

/// Drawn at a size in points, one pixel each. Nil unless both sides are above 0.
std::optional<Image> bitmapImageWithSize(const Image& image, Size size);
std::optional<Image> bitmapImageWithSize(const Image& image, Size size, DrawingQuality quality);
std::optional<Data> TIFFRepresentationWithSize(const Image& image, Size size, DrawingQuality quality);

/// Drawn at exactly so many pixels, the sides rounded down; the part `fromRect` of it (in points of the
/// image; the zero rectangle: all of it) upon the image's background colour. Nil unless both sides are 1 or
/// more.
std::optional<Image> bitmapImageWithPixelSize(
    const Image& image, Size pixels, DrawingQuality quality, Rect fromRect = {});
std::optional<Data> TIFFRepresentationWithPixelSize(
    const Image& image, Size pixels, DrawingQuality quality, Rect fromRect = {});

} // namespace NSImageOstraExtensions

} // namespace caddis
