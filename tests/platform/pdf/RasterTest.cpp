#include "platform/pdf/PDFImageRep.h"

#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// The lower left quarter is red, the upper right one blue; the rest is paper.
PDFBuilder quarters(const std::string& entries)
{
    PDFBuilder builder;
    builder.page(
        "1 0 0 rg 10 20 50 100 re f 0 0 1 rg 60 120 50 100 re f", "/MediaBox [10 20 110 220] " + entries);
    return builder;
}

// One letter a pixel, rows from the top.
std::string colours(const PDFBuilder& builder, const PDFRasterRequest& request)
{
    const auto raster = PDFDocument::initWithData(builder.data())->pageAtIndex(0)->raster(request);
    if (!raster)
        return "nil";
    std::string rows;
    for (std::size_t pixel = 0; pixel < raster->pixels.size(); pixel += 4) {
        const std::uint8_t* colour = raster->pixels.bytes() + pixel;
        EXPECT_EQ(colour[3], 255);
        const unsigned value = unsigned { colour[0] } << 16 | unsigned { colour[1] } << 8 | colour[2];
        rows += value == 0xFF0000 ? 'r' : value == 0x0000FF ? 'b' : value == request.background ? '.' : '?';
        if ((pixel / 4 + 1) % request.pixelsWide == 0)
            rows += ' ';
    }
    return rows;
}

TEST(Raster, PagesFillExactlyThePixelsAskedFor)
{
    EXPECT_EQ(colours(quarters(""), { .pixelsWide = 4, .pixelsHigh = 4 }), "..bb ..bb rr.. rr.. ");
    EXPECT_EQ(colours(quarters(""), { .pixelsWide = 2, .pixelsHigh = 6, .background = 0x102030 }),
        ".b .b .b r. r. r. ");
    EXPECT_EQ(colours(quarters(""), { .pixelsWide = 0, .pixelsHigh = 4 }), "nil");
    EXPECT_EQ(colours(quarters(""), { .pixelsWide = 1U << 31, .pixelsHigh = 1U << 31 }), "nil");
}

TEST(Raster, PagesAreShownTurnedAndCropped)
{
    EXPECT_EQ(colours(quarters("/Rotate 90"), { .pixelsWide = 4, .pixelsHigh = 2 }), "rr.. ..bb ");
    EXPECT_EQ(colours(quarters("/Rotate 180"), { .pixelsWide = 2, .pixelsHigh = 4 }), ".r .r b. b. ");
    EXPECT_EQ(
        colours(quarters("/CropBox [60 20 110 220]"), { .pixelsWide = 2, .pixelsHigh = 4 }), "bb bb .. .. ");
    EXPECT_EQ(colours(quarters("/CropBox [60 20 110 220]"),
                  { .box = PDFDisplayBox::Media, .pixelsWide = 2, .pixelsHigh = 2 }),
        ".b r. ");
}

TEST(Raster, APartOfThePageIsDrawnAtItsOwnScale)
{
    const Rect topSquare { 0, 100, 100, 100 };
    EXPECT_EQ(colours(quarters(""), { .source = topSquare, .pixelsWide = 4, .pixelsHigh = 4 }),
        "..bb ..bb ..bb ..bb ");
    const Rect middle { 25, 50, 50, 100 };
    EXPECT_EQ(colours(quarters(""), { .source = middle, .pixelsWide = 2, .pixelsHigh = 2 }), ".b r. ");
    const Rect nothing { 0, 0, 0, 10 };
    EXPECT_EQ(colours(quarters(""), { .source = nothing, .pixelsWide = 2, .pixelsHigh = 2 }), "nil");
}

TEST(Raster, AnImageIsTheFirstPageAsItIsShown)
{
    const auto image = PDFImageRep::imageRepWithData(quarters("/Rotate 270").data());
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (Size { 200, 100 }));
    EXPECT_EQ(image->pageCount(), 1U);
    EXPECT_TRUE(image->raster({ .pixelsWide = 20, .pixelsHigh = 10 }));
    EXPECT_TRUE(image->PDFRepresentation() == quarters("/Rotate 270").data());
}

} // namespace
} // namespace caddis
