#include "media/ImageDrawing.h"

#include "media/ImageRepresentations.h"
#include "media/ImageSizes.h"
#include "platform/base/Exception.h"

#include <algorithm>
#include <cmath>

namespace caddis {

namespace {

bool hasArea(Size size) { return size.width > 0 && size.height > 0; }

Image imageOf(Bitmap bitmap, Size points)
{
    Image image(points);
    image.addRepresentation(BitmapImageRep(std::move(bitmap), points));
    return image;
}

Bitmap drawnAtSize(const Image& image, Size size, DrawingQuality quality)
{
    GraphicsContext context(size);
    context.shouldAntialias = quality.shouldAntialias;
    context.imageInterpolation = quality.interpolation;
    drawImageInRect(image, context, { 0, 0, size.width, size.height });
    return context.take();
}

std::optional<Bitmap> drawnAtPixelSize(const Image& image, Size pixels, DrawingQuality quality, Rect fromRect)
{
    const Size wholePixels { std::trunc(pixels.width), std::trunc(pixels.height) };
    if (!hasArea(wholePixels))
        return std::nullopt;
    GraphicsContext context(wholePixels);
    context.shouldAntialias = quality.shouldAntialias;
    context.imageInterpolation = quality.interpolation;
    const Rect whole { 0, 0, pixels.width, pixels.height };
    if (fromRect == Rect()) {
        drawImageInRect(image, context, whole);
    } else {
        context.fill(whole, image.backgroundColor());
        image.drawInRect(context, whole, fromRect);
    }
    return context.take();
}

} // namespace

void drawImageInRect(const Image& image, GraphicsContext& context, Rect rect)
{
    const ImageRep* const rep = image.bestRepresentationForRect(rect);
    if (!rep)
        return;
    const BitmapImageRep* const pixels = pixelsOf(*rep);
    if (!pixels) {
        Image uponWhite = image;
        uponWhite.setBackgroundColor(Color::white());
        uponWhite.drawRepresentation(*rep, context, rect);
    } else if (pixels->hasAlpha()) {
        context.fill(rect, image.backgroundColor());
        image.drawInRect(context, rect);
    } else {
        image.drawRepresentation(*rep, context, rect);
    }
}

inline namespace NSImageOstraExtensions {

std::optional<Image> initWithImage(const Image* image, Size size, bool flipped)
{
    if (!image)
        return Image(size);
    return guarded(u"initWithImage:size:flipped:", u"NSImage", [&]() -> std::optional<Image> {
        GraphicsContext context(size);
        drawImageInRect(*image, context, { 0, 0, size.width, size.height });
        if (flipped)
            context.flip();
        return imageOf(context.take(), size);
    });
}

Size scaleToThumbSize(Image& image, Size maximum)
{
    image.setScales(true);
    image.setSize(thumb(maximum, pixelSize(image)));
    return image.size();
}

std::optional<Image> thumbForSize(Image& image, Size maximum)
{
    image.setScales(true);
    return imageWithSize(image, thumb(maximum, pixelSize(image)));
}

std::optional<Image> squareImage(const Image& image)
{
    const Size size = image.size();
    const double side = std::max(size.width, size.height);
    if (!(side > 0))
        return std::nullopt;
    GraphicsContext context(Size { side, side });
    drawImageInRect(
        image, context, { (side - size.width) * 0.5, (side - size.height) * 0.5, size.width, size.height });
    return imageOf(context.take(), { side, side });
}

std::optional<Image> bitmapImage(const Image& image)
{
    const auto tiff = image.TIFFRepresentation();
    return tiff ? Image::initWithData(*tiff) : std::nullopt;
}

std::optional<Image> bitmapImageWithSize(const Image& image, Size size)
{
    return hasArea(size) ? imageWithSize(image, size) : std::nullopt;
}

std::optional<Image> bitmapImageWithSize(const Image& image, Size size, DrawingQuality quality)
{
    return hasArea(size) ? std::optional(imageOf(drawnAtSize(image, size, quality), size)) : std::nullopt;
}

std::optional<Data> TIFFRepresentationWithSize(const Image& image, Size size, DrawingQuality quality)
{
    return hasArea(size) ? TIFFRepresentation(drawnAtSize(image, size, quality), size) : std::nullopt;
}

std::optional<Image> bitmapImageWithPixelSize(
    const Image& image, Size pixels, DrawingQuality quality, Rect fromRect)
{
    auto bitmap = drawnAtPixelSize(image, pixels, quality, fromRect);
    return bitmap ? std::optional(imageOf(*std::move(bitmap), pixels)) : std::nullopt;
}

std::optional<Data> TIFFRepresentationWithPixelSize(
    const Image& image, Size pixels, DrawingQuality quality, Rect fromRect)
{
    const auto bitmap = drawnAtPixelSize(image, pixels, quality, fromRect);
    return bitmap ? TIFFRepresentation(*bitmap) : std::nullopt;
}

} // namespace NSImageOstraExtensions

} // namespace caddis
