#include "platform/image/ImageSource.h"
#include "Seen.h"
#include "platform/image/ImageFiles.h"

#include "support/JPEGBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace caddis {
namespace {

// Left to right: red, blue; below: green, white.
unsigned quarters(unsigned x, unsigned y)
{
    return y < 32 ? (x < 64 ? 0xFF0000 : 0x0000FF) : (x < 64 ? 0x00FF00 : 0xFFFFFF);
}

std::optional<ImageSource> source(const std::string& bytes)
{
    return ImageSource::createWithData(Data::copyOf(bytes));
}

std::string chunk(const std::string& type, const std::string& body)
{
    const auto be32 = [](unsigned long number) {
        std::string text;
        for (int shift = 24; shift >= 0; shift -= 8)
            text += static_cast<char>(number >> shift & 0xFF);
        return text;
    };
    const std::string all = type + body;
    return be32(body.size()) + all
        + be32(crc32(0, reinterpret_cast<const Bytef*>(all.data()), static_cast<uInt>(all.size())));
}

// 8 bits, red green blue alpha; `side` pixels each way but only the given rows.
std::string pngFile(unsigned side, const std::string& rows)
{
    std::string packed(compressBound(rows.size()), '\0');
    uLongf size = packed.size();
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
        rows.size());
    packed.resize(size);
    const std::string length { static_cast<char>(side >> 24), static_cast<char>(side >> 16 & 0xFF),
        static_cast<char>(side >> 8 & 0xFF), static_cast<char>(side & 0xFF) };
    return "\x89PNG\r\n\x1A\n" + chunk("IHDR", length + length + std::string("\x8\x6\0\0\0", 5))
        + chunk("IDAT", packed) + chunk("IEND", "");
}

TEST(ImageSource, EveryOrientationIsShownUpright)
{
    const std::string upright[] = { "40x20 rbgw", "40x20 brwg", "40x20 wgbr", "40x20 gwrb", "20x40 rgbw",
        "20x40 grwb", "20x40 wbgr", "20x40 bwrg" };
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const auto file = source(jpegFile(128, 64, quarters, { .orientation = orientation }));
        EXPECT_EQ(seen(file->thumbnailAtIndex(0, { .maxPixelSize = 40 })),
            upright[static_cast<std::size_t>(orientation - 1)]);
        EXPECT_EQ(seen(file->thumbnailAtIndex(0, { .maxPixelSize = 40, .isUpright = false })), upright[0]);
        EXPECT_EQ(file->infoAtIndex(0)->pixelsWide, 128U);
        EXPECT_EQ(*file->propertiesAtIndex(0).find(u"Orientation"), Value(orientation));
    }
}

TEST(ImageSource, TheEmbeddedPictureIsTakenOnlyWhenAllowedAndNeverEnlarged)
{
    const std::string small = jpegFile(32, 16, [](unsigned, unsigned) { return 0x0000FFU; });
    const auto file = source(jpegFile(128, 64, quarters, { .orientation = 1, .thumbnail = small }));
    const auto thumbnail = [&](std::uint32_t size, bool allowed) {
        return seen(file->thumbnailAtIndex(0, { .maxPixelSize = size, .allowsEmbedded = allowed }));
    };
    EXPECT_EQ(thumbnail(64, true), "32x16 bbbb");
    EXPECT_EQ(thumbnail(16, true), "16x8 bbbb");
    EXPECT_EQ(thumbnail(64, false), "64x32 rbgw");
    EXPECT_EQ(thumbnail(1000, false), "128x64 rbgw");
    const auto broken = source(jpegFile(128, 64, quarters, { .orientation = 1, .thumbnail = "no picture" }));
    EXPECT_EQ(
        seen(broken->thumbnailAtIndex(0, { .maxPixelSize = 64, .allowsEmbedded = true })), "64x32 rbgw");
}

TEST(ImageSource, AnEighthOfAProgressiveFileNeedsOnlyItsMeans)
{
    const auto plain = [](unsigned x, unsigned y) { return (x / 2 + y) * 0x010101; };
    const auto exact = source(jpegFile(240, 120, plain))->thumbnailAtIndex(0, { .maxPixelSize = 30 });
    const auto progressive = source(jpegFile(240, 120, plain, { .isProgressive = true }))
                                 ->thumbnailAtIndex(0, { .maxPixelSize = 30 });
    ASSERT_TRUE(exact && progressive);
    EXPECT_TRUE(exact->pixels == progressive->pixels);
    const auto colours = source(jpegFile(128, 64, quarters, { .isProgressive = true }));
    EXPECT_EQ(seen(colours->imageAtIndex(0)), "128x64 rbgw");
    EXPECT_EQ(seen(colours->thumbnailAtIndex(0, { .maxPixelSize = 16 })), "16x8 rbgw");
    EXPECT_EQ(seen(source(jpegFile(121, 57, quarters, { .isProgressive = true }))
                       ->thumbnailAtIndex(0, { .maxPixelSize = 13 })),
        "13x6 rbgw");
}

TEST(ImageSource, ColoursAreMultipliedByAlpha)
{
    const std::string row("\0\xFF\x80\x00\x80\xFF\xFF\xFF\x00", 9);
    const auto bitmap = source(pngFile(2, row + row))->imageAtIndex(0);
    ASSERT_TRUE(bitmap && bitmap->hasAlpha);
    const std::uint8_t* pixel = bitmap->row(0);
    EXPECT_EQ(std::vector<int>(pixel, pixel + 8), (std::vector<int> { 128, 64, 0, 128, 0, 0, 0, 0 }));
    EXPECT_EQ(source(pngFile(2, row + row))->thumbnailAtIndex(0, { .maxPixelSize = 1 })->row(0)[3], 64);
}

TEST(ImageSource, BombsAndDamagedFilesGiveNothingOrWhatCanBeHad)
{
    EXPECT_FALSE(source(""));
    EXPECT_FALSE(source("text"));
    const auto bomb = source(pngFile(30'000, std::string(1'000, '\0')));
    EXPECT_FALSE(bomb->infoAtIndex(0) || bomb->thumbnailAtIndex(0, { .maxPixelSize = 64 }));
    EXPECT_FALSE(source("\xFF\xD8\xFF")->imageAtIndex(0));
    const std::string whole = jpegFile(128, 64, quarters);
    for (std::size_t length = 3; length < whole.size(); length += 7)
        if (const auto cut = source(whole.substr(0, length)))
            cut->imageAtIndex(0);
    EXPECT_EQ(source(whole)->imageAtIndex(1).has_value(), false);
    EXPECT_EQ(
        source(pngFile(2, std::string("\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 9)))->imageAtIndex(0)->row(0)[0],
        255);
}

TEST(TIFF, HoldsThePixelsPlainOrPacked)
{
    const auto bitmap = source(jpegFile(128, 64, quarters))->imageAtIndex(0);
    const auto plain = TIFFRepresentation(*bitmap);
    const auto packed = TIFFRepresentation(*bitmap, { 64, 32 }, TIFFCompression::LZW);
    ASSERT_TRUE(plain && packed);
    EXPECT_NE(plain->chars().find(bitmap->pixels.chars().substr(0, 64 * 128 * 4)), std::string_view::npos);
    EXPECT_LT(packed->size(), plain->size() / 4);
    EXPECT_FALSE(TIFFRepresentation(Bitmap()));
}

} // namespace
} // namespace caddis
