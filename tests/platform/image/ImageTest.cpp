#include "platform/image/Image.h"
#include "Seen.h"

#include "support/JPEGBuilder.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"

#include "platform/base/Exception.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr const char* RedSquare
    = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 10 10 30 20\n%%HiResBoundingBox: 10 10 30 "
      "20\n%%EndComments\n1 0 0 setrgbcolor 10 10 10 10 rectfill\nshowpage\n";

// Left to right: red, blue; below: green, white.
Bitmap quarters(std::uint32_t wide, std::uint32_t high)
{
    std::vector<std::uint8_t> pixels;
    for (std::uint32_t y = 0; y < high; ++y)
        for (std::uint32_t x = 0; x < wide; ++x) {
            const bool isLeft = x < wide / 2;
            const bool isTop = y < high / 2;
            for (const bool isOn : { isLeft == isTop, !isTop, !isLeft, true })
                pixels.push_back(isOn ? 255 : 0);
        }
    return { wide, high, false, Data::adopt(std::move(pixels)) };
}

TEST(GraphicsContext, FillsAndDrawsFromTheLowerLeft)
{
    GraphicsContext context(8, 8);
    context.fill({ 0, 0, 8, 4 }, Color { 0, 255, 0 });
    context.draw(quarters(4, 4), { 4, 0, 4, 4 });
    EXPECT_EQ(seen(GraphicsContext(context).take()), "8x8 --gw");
    context.flip();
    EXPECT_EQ(seen(context.take()), "8x8 gb--");
    GraphicsContext half(1, 1);
    half.fill({ 0, 0, 1, 1 }, Color { 255, 0, 0, 128 });
    const Bitmap clear = half.take();
    EXPECT_TRUE(clear.hasAlpha && clear.row(0)[0] == 128);
    GraphicsContext over(1, 1);
    over.fill({ 0, 0, 1, 1 }, Color::white());
    over.draw(clear, { 0, 0, 1, 1 });
    EXPECT_EQ(over.take().row(0)[1], 127);
    EXPECT_THROW(GraphicsContext(Size { 0, 5 }), Exception);
    EXPECT_THROW(GraphicsContext(1'000'000, 1'000'000), Exception);
}

TEST(GraphicsContext, DrawsLargerAndSmallerAndInPart)
{
    for (const auto interpolation :
        { ImageInterpolation::None, ImageInterpolation::Low, ImageInterpolation::High }) {
        GraphicsContext context(32, 16);
        context.imageInterpolation = interpolation;
        context.draw(quarters(8, 8), { 0, 0, 32, 16 });
        EXPECT_EQ(seen(context.take()), "32x16 rbgw");
    }
    GraphicsContext part(4, 4);
    part.draw(quarters(8, 8), { 4, 0, 4, 8 }, { 0, 0, 4, 4 });
    EXPECT_EQ(seen(part.take()), "4x4 bbww");
    GraphicsContext beyond(4, 4);
    beyond.draw(quarters(8, 8), { -4, -4, 8, 8 });
    EXPECT_EQ(seen(beyond.take()), "4x4 bbbb");
}

TEST(GraphicsContext, InterpolatesBetweenPixels)
{
    const Bitmap ends { 2, 1, false,
        Data::adopt(std::vector<std::uint8_t> { 0, 0, 0, 255, 200, 200, 200, 255 }) };
    const auto row = [&](ImageInterpolation interpolation) {
        const Bitmap wide = resampled(ends, { 0, 0, 2, 1 }, 4, 1, interpolation);
        return std::vector<int> { wide.row(0)[0], wide.row(0)[4], wide.row(0)[8], wide.row(0)[12] };
    };
    EXPECT_EQ(row(ImageInterpolation::None), (std::vector { 0, 0, 200, 200 }));
    EXPECT_EQ(row(ImageInterpolation::Low), (std::vector { 0, 50, 150, 200 }));
    EXPECT_EQ(row(ImageInterpolation::High)[0], 0) << "what overshoots is cut";
    EXPECT_LT(row(ImageInterpolation::High)[1], 50) << "edges are sharper";
    const Bitmap small = resampled(ends, { 0, 0, 2, 1 }, 1, 1, ImageInterpolation::High);
    EXPECT_EQ(small.row(0)[0], 100);
}

TEST(Image, ChoosesTheRepresentationThatHasJustEnoughPixels)
{
    Image image(Size { 16, 16 });
    EXPECT_EQ(image.bestRepresentationForRect({}), nullptr);
    for (const std::uint32_t side : { 64U, 16U, 32U })
        image.addRepresentation(BitmapImageRep(quarters(side, side), { 16, 16 }));
    const auto best = [&](double side) {
        return pixelSizeOf(*image.bestRepresentationForRect({ 0, 0, side, side })).width;
    };
    EXPECT_EQ(best(8), 16);
    EXPECT_EQ(best(17), 32);
    EXPECT_EQ(best(64), 64);
    EXPECT_EQ(best(65), 64);
}

TEST(Image, HasItsSizeInPointsUpright)
{
    const std::string file = jpegFile(
        40, 20, [](unsigned x, unsigned) { return x < 20 ? 0xFF0000U : 0x0000FFU; }, { .orientation = 6 });
    const auto image = Image::initWithData(Data::copyOf(file));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (Size { 20, 40 }));
    GraphicsContext context(10, 20);
    image->drawInRect(context, context.bounds());
    EXPECT_EQ(seen(context.take()), "10x20 rrbb");
    GraphicsContext top(10, 10);
    image->drawInRect(top, top.bounds(), { 0, 20, 20, 20 });
    EXPECT_EQ(seen(top.take()), "10x10 rrrr");
}

TEST(Image, PagesAreDrawnUponNothing)
{
    PDFBuilder pdf;
    pdf.page("1 0 0 rg 0 396 306 396 re f");
    const auto image = Image::initWithData(pdf.data());
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (Size { 612, 792 }));
    GraphicsContext context(34, 44);
    image->drawInRect(context, context.bounds());
    EXPECT_EQ(seen(context.take()), "34x44 r---");
    EXPECT_TRUE(image->TIFFRepresentation());
}

TEST(Image, PostScriptIsConvertedWhenItIsDrawn)
{
    const auto image = Image::initWithData(Data::copyOf(RedSquare));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (Size { 20, 10 }));
    const auto& rep = std::get<EPSImageRep>(image->representations().front());
    EXPECT_FALSE(rep.PDFImageRep());
    GraphicsContext context(20, 10);
    image->drawInRect(context, context.bounds());
    EXPECT_EQ(seen(context.take()), "20x10 r-r-");
    EXPECT_TRUE(rep.PDFImageRep());
    EXPECT_EQ(rep.PDFImageRep()->size(), (Size { 20, 10 }));
    EXPECT_FALSE(Image::initWithData(Data::copyOf("%!PS\n{ } bogus")));
}

TEST(Image, NothingComesOfNothing)
{
    EXPECT_FALSE(Image::initWithData(Data()) || Image::initWithData(Data::copyOf("text")));
    EXPECT_FALSE(Image::initWithContentsOfFile(u"/nowhere"_s) || Image().TIFFRepresentation());
    const std::string whole = jpegFile(8, 8, [](unsigned, unsigned) { return 0U; });
    EXPECT_FALSE(Image::initWithData(Data::copyOf(whole.substr(0, 20))));
}

TEST(ImageFiles, ComeBackAsTheyWere)
{
    const auto reread = [](const std::optional<Data>& file) {
        const auto source = file ? ImageSource::createWithData(*file) : std::nullopt;
        return source ? seen(source->imageAtIndex(0)) : "nil";
    };
    const Bitmap bitmap = quarters(32, 16);
    EXPECT_EQ(reread(TIFFRepresentation(bitmap)), "32x16 rbgw");
    EXPECT_EQ(reread(PNGRepresentation(bitmap)), "32x16 rbgw");
    EXPECT_EQ(reread(JPEGRepresentation(bitmap)), "32x16 rbgw");
    EXPECT_EQ(reread(representationOfBitmap(bitmap, BitmapImageFileType::GIF, 1)), "32x16 rbgw");
    EXPECT_EQ(reread(representationOfBitmap(bitmap, BitmapImageFileType::BMP, 1)), "32x16 rbgw");
    GraphicsContext half(4, 4);
    half.fill({ 0, 0, 4, 2 }, Color { 0, 0, 255, 200 });
    const Bitmap clear = half.take();
    EXPECT_EQ(reread(PNGRepresentation(clear)), "4x4 --bb");
    EXPECT_EQ(reread(JPEGRepresentation(clear, 1)), "4x4 wwbb");
    EXPECT_FALSE(PNGRepresentation(Bitmap()));
    EXPECT_LT(JPEGRepresentation(bitmap, 0)->size(), JPEGRepresentation(bitmap, 1)->size());
}

} // namespace
} // namespace caddis
