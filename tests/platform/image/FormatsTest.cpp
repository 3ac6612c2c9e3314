#include "PictureFiles.h"
#include "Seen.h"
#include "platform/image/ImageFiles.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// One picture, red and blue above green and white, in every kind of file.
class Formats : public testing::TestWithParam<std::pair<const char*, const char16_t*>> { };

TEST_P(Formats, ShowTheSamePicture)
{
    const auto file = sourceOf(bytesOfPicture(GetParam().first));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->type(), String(GetParam().second));
    EXPECT_EQ(file->count(), 1U);
    EXPECT_EQ(file->infoAtIndex(0)->pixelsWide, 32U);
    EXPECT_EQ(seen(file->imageAtIndex(0)), "32x16 rbgw");
    EXPECT_EQ(seen(file->thumbnailAtIndex(0, { .maxPixelSize = 8 })), "8x4 rbgw");
    EXPECT_EQ(seen(file->imageAtIndex(1)), "nil");
}

class CutFormats : public Formats { };

// Nothing but a crash, a hang or a sanitizer's report can fail here.
TEST_P(CutFormats, OutliveEveryCut)
{
    const std::string whole = bytesOfPicture(GetParam().first);
    const std::size_t step = whole.size() / 60 + 1;
    for (std::size_t length = 0; length < whole.size(); length += step)
        if (const auto cut = sourceOf(whole.substr(0, length)))
            cut->thumbnailAtIndex(0, { .maxPixelSize = 8 });
}

std::string extensionOf(const testing::TestParamInfo<Formats::ParamType>& row)
{
    const std::string name = row.param.first;
    return name.substr(name.find('.') + 1);
}

const auto InProcess = testing::Values(std::pair("quarters.avif", u"public.avif"),
    std::pair("quarters.bmp", u"com.microsoft.bmp"), std::pair("quarters.gif", u"com.compuserve.gif"),
    std::pair("quarters.heic", u"public.heic"), std::pair("quarters.ico", u"com.microsoft.ico"),
    std::pair("quarters.jp2", u"public.jpeg-2000"), std::pair("quarters.jxl", u"public.jpeg-xl"),
    std::pair("quarters.pict", u"com.apple.pict"), std::pair("quarters.ppm", u"public.pbm"),
    std::pair("quarters.psd", u"com.adobe.photoshop-image"), std::pair("quarters.svg", u"public.svg-image"),
    std::pair("quarters.tga", u"com.truevision.tga-image"), std::pair("quarters.tiff", u"public.tiff"),
    std::pair("quarters.webp", u"org.webmproject.webp"));
// A program of its own reads these.
const auto Rare = testing::Values(
    std::pair("quarters.pcx", u"com.zsoft.pcx"), std::pair("quarters.sgi", u"com.sgi.sgi-image"));
INSTANTIATE_TEST_SUITE_P(InProcess, Formats, InProcess, extensionOf);
INSTANTIATE_TEST_SUITE_P(Rare, Formats, Rare, extensionOf);
INSTANTIATE_TEST_SUITE_P(InProcess, CutFormats, InProcess, extensionOf);

TEST(Frames, AreCountedAndDrawnOverEachOther)
{
    const auto gif = sourceOf(bytesOfPicture("frames.gif"));
    EXPECT_EQ(gif->count(), 3U);
    EXPECT_EQ(seen(gif->imageAtIndex(0)), "8x8 rrrr");
    EXPECT_EQ(seen(gif->imageAtIndex(1)), "8x8 g---");
    EXPECT_EQ(*gif->propertiesAtIndex(0).find(u"{GIF}")->as<Dictionary>()->find(u"DelayTime"), Value(0.08));
    const auto tiff = sourceOf(bytesOfPicture("frames.tiff"));
    EXPECT_EQ(tiff->count(), 3U);
    EXPECT_EQ(seen(tiff->imageAtIndex(2)), "4x4 bbbb");
}

// An element of an ICNS file.
std::string element(const std::string& type, const std::string& bytes)
{
    std::string length;
    for (const unsigned shift : { 24U, 16U, 8U, 0U })
        length += static_cast<char>((bytes.size() + 8) >> shift & 0xFF);
    return type + length + bytes;
}

TEST(Icons, StandWithTheLargestFirst)
{
    const auto png = PNGRepresentation(*sourceOf(bytesOfPicture("quarters.bmp"))->imageAtIndex(0));
    const std::string red = "\xFF\xFF\xFB\xFF"; // 130 and 126 of 0xFF.
    const std::string black("\xFF\0\xFB\0", 4);
    const std::string small = element("is32", red + black + black)
        + element("s8mk", std::string(128, '\xFF') + std::string(128, '\0'));
    const auto icons = sourceOf(element("icns", small + element("ic07", std::string(png->chars()))));
    ASSERT_TRUE(icons);
    EXPECT_EQ(icons->type(), u"com.apple.icns"_s);
    EXPECT_EQ(icons->count(), 2U);
    EXPECT_EQ(seen(icons->imageAtIndex(0)), "32x16 rbgw");
    EXPECT_EQ(seen(icons->imageAtIndex(1)), "16x16 rr--");
}

TEST(PortableMaps, AreTextOrBytesOfAnyDepth)
{
    EXPECT_EQ(seen(sourceOf("P1\n# a bitmap\n2 2\n10\n01 ")->imageAtIndex(0)), "2x2 kwwk");
    EXPECT_EQ(seen(sourceOf("P3 2 1 7  7 0 0  0 0 7 ")->imageAtIndex(0)), "2x1 rbrb");
    EXPECT_EQ(seen(sourceOf(std::string("P4 9 1\n\x00\x80", 9))->imageAtIndex(0)), "9x1 wwww");
    EXPECT_EQ(seen(sourceOf(std::string("P5 2 1 65535\n\xFF\xFF\0\0", 17))->imageAtIndex(0)), "2x1 wkwk");
    const std::string map = "P7\nWIDTH 1\nHEIGHT 2\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
    EXPECT_EQ(seen(sourceOf(map + std::string("\xFF\0\0\xFF\0\0\xFF\0", 8))->imageAtIndex(0)), "1x2 rr--");
    EXPECT_EQ(seen(sourceOf(std::string("PF\n1 1\n-1\n\0\0\x80\x3F\0\0\0\0\0\0\0\0", 22))->imageAtIndex(0)),
        "1x1 rrrr");
    EXPECT_FALSE(sourceOf("P6 0 x 255 ") || sourceOf("P7\nDEPTH 9\nENDHDR\n"));
}

TEST(Colours, AreThoseOfTheProfileInSRGB)
{
    const auto file = sourceOf(bytesOfPicture("exchanged.png"));
    EXPECT_EQ(seen(file->imageAtIndex(0)), "32x16 brgw");
    EXPECT_EQ(file->imageAtIndex(0)->row(8)[3], 200);
    EXPECT_EQ(seen(file->thumbnailAtIndex(0, { .maxPixelSize = 8 })), "8x4 brgw");
    EXPECT_EQ(*file->propertiesAtIndex(0).find(u"ProfileName"), Value(u"Red and blue exchanged"_s));
}

TEST(Properties, HoldWhatTheFileSaysOfThePicture)
{
    const Dictionary properties = sourceOf(bytesOfPicture("tagged.jpg"))->propertiesAtIndex(0);
    const auto of = [&](std::u16string_view group, std::u16string_view key) {
        const Value* const dictionary = properties.find(group);
        const Value* const value = dictionary ? dictionary->as<Dictionary>()->find(key) : nullptr;
        return value ? *value : Value();
    };
    EXPECT_EQ(*properties.find(u"DPIWidth"), Value(144.0));
    EXPECT_EQ(of(u"{TIFF}", u"Make"), Value(u"Lens Works"_s));
    EXPECT_EQ(of(u"{TIFF}", u"Orientation"), Value(6));
    EXPECT_EQ(of(u"{Exif}", u"ExposureTime"), Value(0.004));
    EXPECT_EQ(of(u"{Exif}", u"ISOSpeedRatings"), Value(Array { 400 }));
    EXPECT_EQ(of(u"{Exif}", u"ExifVersion"), Value(Array { 2, 3, 2 }));
    EXPECT_EQ(of(u"{Exif}", u"LensSpecification"), Value(Array { 24.0, 70.0, 2.8, 4.0 }));
    EXPECT_EQ(of(u"{Exif}", u"UserComment"), Value(u"Gr\u00FC\u00DFe"_s));
    EXPECT_EQ(of(u"{GPS}", u"Latitude"), Value(48.5));
    EXPECT_EQ(of(u"{GPS}", u"LongitudeRef"), Value(u"W"_s));
    EXPECT_EQ(of(u"{GPS}", u"TimeStamp"), Value(u"10:11:12"_s));
    EXPECT_EQ(of(u"{GPS}", u"GPSVersion"), Value(Array { 2, 3, 0, 0 }));
    EXPECT_EQ(of(u"{IPTC}", u"Keywords"), Value(Array { u"eins"_s, u"zwei"_s }));
    EXPECT_EQ(of(u"{IPTC}", u"City"), Value(u"K\u00F6ln"_s));
    EXPECT_EQ(of(u"{IPTC}", u"Province/State"), Value(u"NRW"_s));
}

} // namespace
} // namespace caddis
