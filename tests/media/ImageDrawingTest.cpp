#include "media/ImageDrawing.h"
#include "media/ImageRepresentations.h"

#include "support/LogCapture.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr Color Red { 255, 0, 0 };

Image imageOfColour(std::uint32_t wide, std::uint32_t high, Color color)
{
    GraphicsContext context(wide, high);
    context.fill(context.bounds(), color);
    return *imageWithCGImageRef(context.take());
}

Image page(double wide, double high, const std::string& content)
{
    PDFBuilder pdf;
    pdf.page(content, "/MediaBox [0 0 " + std::to_string(wide) + " " + std::to_string(high) + "]");
    return *Image::initWithData(pdf.data());
}

// The four bytes of a pixel; y counts from the top.
std::vector<int> pixel(const std::optional<Image>& image, std::size_t x, std::size_t y)
{
    const Bitmap bitmap = *bitmapImageRep(*image)->bitmap();
    const std::uint8_t* bytes = bitmap.row(y) + x * 4;
    return { bytes, bytes + 4 };
}

const std::vector OpaqueRed { 255, 0, 0, 255 };
const std::vector OpaqueWhite { 255, 255, 255, 255 };
const std::vector Nothing { 0, 0, 0, 0 };

TEST(ImageSizesOfImages, FollowThePixels)
{
    Image image = imageOfColour(1000, 3000, Red);
    EXPECT_EQ(thumbSize(image, { 256, 256 }), (Size { 85, 256 }));
    EXPECT_EQ(scaledSize(image, 0.0015), (Size { 1, 4 }));
    image.setSize({ 10, 20 });
    EXPECT_EQ(pixelSize(image), (Size { 1000, 3000 }));
    EXPECT_EQ(aspectRatio(image), 0.5);
    EXPECT_EQ(pixelSize(Image({ 7, 8 })), (Size { 7, 8 }));
    EXPECT_FALSE(image.scales());
    EXPECT_EQ(thumbForSize(image, { 100, 100 })->size(), (Size { 33, 100 }));
    EXPECT_TRUE(image.scales());
    EXPECT_EQ(image.size(), (Size { 10, 20 }));
    EXPECT_EQ(scaleToThumbSize(image, { 100, 100 }), (Size { 33, 100 }));
    EXPECT_EQ(image.size(), (Size { 33, 100 }));
}

TEST(ImageDrawing, PagesStandUponWhiteAndClearBitmapsUponTheImagesOwnColour)
{
    const Image red = page(20, 20, "1 0 0 rg 0 0 10 20 re f");
    const auto drawn = imageWithSize(red, { 20, 20 });
    EXPECT_EQ(pixel(drawn, 2, 2), OpaqueRed);
    EXPECT_EQ(pixel(drawn, 17, 2), OpaqueWhite);
    EXPECT_FALSE(hasAlpha(*drawn));
    Image clear = imageOfColour(4, 4, Color::clear());
    EXPECT_EQ(pixel(imageWithSize(clear, { 4, 4 }), 1, 1), Nothing);
    clear.setBackgroundColor(Red);
    EXPECT_EQ(pixel(imageWithSize(clear, { 4, 4 }), 1, 1), OpaqueRed);
}

TEST(ImageDrawing, ExactPixelsOfAllOrOfAPart)
{
    Image tall = page(600, 2000, "1 0 0 rg 0 1400 600 600 re f");
    const PDFThumb thumb = PDFThumbSize(tall, { 128, 128 });
    EXPECT_EQ(thumb.size, (Size { 128, 128 }));
    EXPECT_EQ(thumb.fromRect, (Rect { 0, 1400, 600, 600 }));
    const auto top = bitmapImageWithPixelSize(tall, thumb.size, {}, thumb.fromRect);
    EXPECT_EQ(pixel(top, 64, 2), OpaqueRed);
    EXPECT_EQ(pixel(top, 64, 125), OpaqueRed);
    EXPECT_EQ(bitmapImageWithPixelSize(tall, { 10.9, 33.9 }, {})->size(), (Size { 10.9, 33.9 }));
    EXPECT_EQ(pixelSize(*bitmapImageWithPixelSize(tall, { 10.9, 33.9 }, {})), (Size { 10, 33 }));
    EXPECT_FALSE(
        bitmapImageWithPixelSize(tall, { 0, 3 }, {}) || TIFFRepresentationWithPixelSize(tall, { 3, -1 }, {}));
    const auto tiff
        = TIFFRepresentationWithPixelSize(tall, { 30, 100 }, { .interpolation = ImageInterpolation::High });
    EXPECT_EQ(pixelSize(*Image::initWithData(*tiff)), (Size { 30, 100 }));
}

TEST(ImageDrawing, SizesInPoints)
{
    const Image image = imageOfColour(40, 10, Red);
    const auto square = squareImage(image);
    EXPECT_EQ(square->size(), (Size { 40, 40 }));
    EXPECT_EQ(pixel(square, 20, 20), OpaqueRed);
    EXPECT_EQ(pixel(square, 20, 2), Nothing);
    EXPECT_FALSE(squareImage(Image()));
    EXPECT_EQ(bitmapImageWithSize(image, { 8, 2 })->size(), (Size { 8, 2 }));
    EXPECT_FALSE(bitmapImageWithSize(image, { 8, 0 }) || TIFFRepresentationWithSize(image, { -1, 1 }, {}));
    EXPECT_EQ(bitmapImage(image)->size(), (Size { 40, 10 }));
    EXPECT_FALSE(bitmapImage(Image({ 5, 5 })));
}

TEST(ImageDrawing, WhatCannotBeDrawnIsLogged)
{
    LogCapture log;
    const Image image = imageOfColour(4, 4, Red);
    EXPECT_FALSE(initWithImage(&image, { 0, 4 }, false));
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.lines().front().view().starts_with(u"initWithImage:size:flipped: (NSImage): "));
    EXPECT_EQ(initWithImage(nullptr, { 3, 4 }, false)->size(), (Size { 3, 4 }));
}

TEST(ImageRepresentations, TellWhatAnImageIs)
{
    const Image bitmap = imageOfColour(4, 4, Red);
    const Image pdf = page(20, 20, "");
    const Image eps = *Image::initWithData(Data::copyOf("%!PS\n%%BoundingBox: 0 0 20 10\n"));
    EXPECT_TRUE(
        isBitmapImage(bitmap) && !isPDFImage(bitmap) && !hasAlpha(bitmap) && !isScalableImage(bitmap));
    EXPECT_TRUE(
        isPDFImage(pdf) && hasAlpha(pdf) && !isEPSImage(pdf) && PDFImageRepOf(pdf) && isScalableImage(pdf));
    EXPECT_TRUE(isPDFImage(eps) && hasAlpha(eps) && isEPSImage(eps) && !PDFImageRepOf(eps));
    EXPECT_TRUE(isReallyValid(eps) && !isReallyValid(Image()) && !isReallyValid(Image({ 2, 2 })));
    EXPECT_FALSE(hasAlpha(Image()) || isPICTImage(bitmap) || imageWithCGImageRef(Bitmap()));
}

TEST(ImageRepresentations, TheBestFormIsTheImagesOwn)
{
    const auto best = bestRepresentationAndFileExtension(page(20, 20, ""));
    EXPECT_EQ(best.fileExtension, u"pdf"_s);
    EXPECT_TRUE(best.data->chars().starts_with("%PDF"));
    const Image eps = *Image::initWithData(Data::copyOf("%!PS\n%%BoundingBox: 0 0 20 10\n"));
    EXPECT_EQ(bestRepresentationAndFileExtension(eps).fileExtension, u"eps"_s);
    EXPECT_TRUE(bestRepresentation(eps)->chars().starts_with("%!PS"));
    const Image bitmap = imageOfColour(64, 64, Red);
    EXPECT_EQ(pathExtensionForBestRepresentation(bitmap), u"tiff"_s);
    EXPECT_LT(bestRepresentation(bitmap)->size(), bitmap.TIFFRepresentation()->size());
    EXPECT_TRUE(representationUsingType(page(20, 20, ""), BitmapImageFileType::PNG, 1)
                    ->chars()
                    .starts_with("\x89PNG"));
    EXPECT_EQ(data(*bitmapImageRep(bitmap))->size(), std::size_t { 64 * 64 * 4 });
}

} // namespace
} // namespace caddis
