#include "PictureFiles.h"
#include "Seen.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::string words(std::initializer_list<int> numbers)
{
    std::string text;
    for (const int number : numbers) {
        text += static_cast<char>(number >> 8 & 0xFF);
        text += static_cast<char>(number & 0xFF);
    }
    return text;
}

constexpr int Red[] = { 0xFFFF, 0, 0 };
constexpr int Blue[] = { 0, 0, 0xFFFF };

std::string foreColour(const int (&colour)[3]) { return words({ 0x1A, colour[0], colour[1], colour[2] }); }

// 40 by 40, drawn by these operators.
std::string picture(const std::string& operators, const std::string& extendedHead = "")
{
    return std::string(512, '\0') + words({ 0, 0, 0, 40, 40, 0x11, 0x2FF }) + extendedHead + operators
        + words({ 0xFF });
}

std::string drawn(const std::string& file)
{
    const auto source = sourceOf(file);
    return source ? seen(source->imageAtIndex(0)) : "nil";
}

TEST(PICT, ShapesArePaintedFramedErasedAndInverted)
{
    EXPECT_EQ(drawn(picture("")), "40x40 wwww");
    const std::string left = words({ 0x31, 0, 0, 40, 20 });
    EXPECT_EQ(drawn(picture(foreColour(Red) + left)), "40x40 rwrw");
    EXPECT_EQ(drawn(picture(foreColour(Red) + left + words({ 0x3A }))), "40x40 wwww");
    EXPECT_EQ(drawn(picture(words({ 0x33, 0, 0, 20, 40 }))), "40x40 kkww");
    EXPECT_EQ(drawn(picture(foreColour(Blue) + words({ 0x07, 15, 15, 0x30, 0, 0, 40, 40 }))), "40x40 bbbb");
    EXPECT_EQ(drawn(picture(foreColour(Blue) + words({ 0x51, 0, 0, 20, 20, 0x61, 20, 20, 40, 40, 0, 360 }))),
        "40x40 bwwb");
    EXPECT_EQ(drawn(picture(foreColour(Red) + words({ 0x07, 20, 20, 0x20, 0, 0, 0, 20 }))), "40x40 rrww");
    const std::string triangle = words({ 0x71, 22, 0, 0, 30, 40, 0, 0, 0, 40, 30, 40 });
    EXPECT_EQ(drawn(picture(foreColour(Red) + triangle)), "40x40 wrww");
}

TEST(PICT, WhatIsClippedOrSkippedLeavesThePaper)
{
    const std::string all = foreColour(Red) + words({ 0x31, 0, 0, 40, 40 });
    EXPECT_EQ(drawn(picture(words({ 0x01, 10, 0, 0, 20, 20 }) + all)), "40x40 rwww");
    // The upper left and the lower right, as one region.
    const std::string region
        = words({ 0x01, 36, 0, 0, 40, 40, 0, 0, 20, 0x7FFF, 20, 0, 40, 0x7FFF, 40, 20, 40, 0x7FFF, 0x7FFF });
    EXPECT_EQ(drawn(picture(region + words({ 0 }) + all)), "40x40 rwwr");
    // One whose size reaches beyond the file.
    EXPECT_EQ(drawn(picture(all + words({ 0x81, 0x7000, 0, 0, 40, 40, 5, 10 }))), "40x40 rrrr");
    const std::string comment = words({ 0xA1, 100, 3 }) + "abc" + '\0';
    EXPECT_EQ(drawn(picture(comment + words({ 0x0C00 }) + std::string(24, '\xEE') + all)), "40x40 rrrr");
    EXPECT_EQ(drawn(picture(all + words({ 0x9A, 0, 0 }))), "40x40 rrrr");
}

TEST(PICT, AFileThatEndsWithinAnOperatorEnds)
{
    const std::string all = foreColour(Red) + words({ 0x31, 0, 0, 40, 40 });
    for (const auto& operators : { words({ 0x80, 0x7FFF, 0, 0, 40, 40, 0, 1, 2 }),
             words({ 0x70, 0x7FFF, 0, 0 }), words({ 0x99, 0x8008, 0, 0, 9, 9, 0 }),
             words({ 0x8200, 0x7FFF, 0xFFFF, 1 }), words({ 0x13, 1 }) }) {
        const std::string file = picture(all + operators);
        EXPECT_EQ(drawn(file.substr(0, file.size() - 2)), "40x40 rrrr");
    }
}

TEST(PICT, PixelsOfEveryPackingFillTheirBox)
{
    const auto map = [](int packing, int bits, int bytesPerRow) {
        return words({ 0, 0, bytesPerRow | 0x8000, 0, 0, 1, 2, 0, packing, 0, 0, 0, 72, 0, 72, 16, bits, 3,
                   bits / 3, 0, 0, 0, 0, 0, 0 })
            + words({ 0, 0, 1, 2, 0, 0, 40, 40, 0 });
    };
    const auto direct = [&](int packing, int bits, int bytesPerRow, const std::string& pixels) {
        return drawn(picture(words({ 0x9A }) + map(packing, bits, bytesPerRow) + pixels));
    };
    EXPECT_EQ(direct(1, 32, 8, std::string("\0\xFF\0\0\0\0\0\xFF", 8)), "40x40 rbrb");
    EXPECT_EQ(direct(2, 32, 8, std::string("\xFF\0\0\0\0\xFF", 6)), "40x40 rbrb");
    EXPECT_EQ(direct(4, 32, 8, std::string("\7\5\xFF\0\0\0\0\xFF", 8)), "40x40 rbrb");
    EXPECT_EQ(direct(3, 16, 8, std::string("\5\1\x7C\0\0\x1F\0", 7)), "40x40 rbrb");
    const std::string bits = words({ 0x90, 2, 0, 0, 1, 2, 0, 0, 1, 2, 0, 0, 40, 40, 0, 0x8000 });
    EXPECT_EQ(drawn(picture(foreColour(Red) + bits)), "40x40 rwrw");
}

TEST(PICT, CoordinatesMayBeThoseOfALargerFrame)
{
    const std::string head = words({ 0x0C00, 0xFFFE, 0, 144, 0, 144, 0, 100, 100, 180, 180, 0, 0 });
    const std::string upperLeft = foreColour(Blue) + words({ 0x31, 100, 100, 140, 140 });
    EXPECT_EQ(drawn(picture(upperLeft, head)), "40x40 bwww");
}

TEST(PICT, AnotherFileInsideIsDrawnAndItsExcuseIsNot)
{
    const std::string file = bytesOfPicture("quarters.bmp");
    const auto size = static_cast<int>(file.size());
    const std::string one = words({ 1, 0 });
    const std::string none = words({ 0, 0 });
    const std::string matrix = one + none + none + none + one + none + none + none + words({ 0x4000, 0 });
    const std::string description
        = words({ 0, 86 }) + "BMP " + std::string(36, '\0') + words({ 0, size }) + std::string(38, '\0');
    const std::string body = words({ 0 }) + matrix + std::string(4 + 8 + 2, '\0') + words({ 0, 0, 40, 40 })
        + std::string(8, '\0') + description + file;
    const std::string text = words({ 0x0D, 60, 0x28, 40, 0, 0x0358 }) + "XX";
    EXPECT_EQ(drawn(picture(words({ 0x8200, 0, static_cast<int>(body.size()) }) + body
                  + words({ 0x28, 40, 0, 0x0158 }))),
        "40x40 rbgw");
    EXPECT_NE(drawn(picture(text)), "40x40 wwww");
}

} // namespace
} // namespace caddis
