#include "Seen.h"
#include "platform/image/ImageSource.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace caddis {
namespace {

std::string bytesOf(const std::string& name)
{
    std::ifstream file(CADDIS_TEST_DATA "/pictures/" + name, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::optional<ImageSource> source(const std::string& bytes)
{
    return ImageSource::createWithData(Data::copyOf(bytes));
}

// One picture, red and blue above green and white, in every kind of file.
class Formats : public testing::TestWithParam<std::pair<const char*, const char16_t*>> { };

TEST_P(Formats, ShowTheSamePicture)
{
    const auto file = source(bytesOf(GetParam().first));
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
    const std::string whole = bytesOf(GetParam().first);
    const std::size_t step = whole.size() / 60 + 1;
    for (std::size_t length = 0; length < whole.size(); length += step)
        if (const auto cut = source(whole.substr(0, length)))
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
    std::pair("quarters.ppm", u"public.pbm"), std::pair("quarters.psd", u"com.adobe.photoshop-image"),
    std::pair("quarters.svg", u"public.svg-image"), std::pair("quarters.tga", u"com.truevision.tga-image"),
    std::pair("quarters.tiff", u"public.tiff"), std::pair("quarters.webp", u"org.webmproject.webp"));
// A program of its own reads these.
const auto Rare = testing::Values(std::pair("quarters.pcx", u"com.zsoft.pcx"),
    std::pair("quarters.pict", u"com.apple.pict"), std::pair("quarters.sgi", u"com.sgi.sgi-image"));
INSTANTIATE_TEST_SUITE_P(InProcess, Formats, InProcess, extensionOf);
INSTANTIATE_TEST_SUITE_P(Rare, Formats, Rare, extensionOf);
INSTANTIATE_TEST_SUITE_P(InProcess, CutFormats, InProcess, extensionOf);

TEST(Frames, AreCountedAndDrawnOverEachOther)
{
    const auto gif = source(bytesOf("frames.gif"));
    EXPECT_EQ(gif->count(), 3U);
    EXPECT_EQ(seen(gif->imageAtIndex(0)), "8x8 rrrr");
    EXPECT_EQ(seen(gif->imageAtIndex(1)), "8x8 g---");
    EXPECT_EQ(*gif->propertiesAtIndex(0).find(u"{GIF}")->as<Dictionary>()->find(u"DelayTime"), Value(0.08));
    const auto tiff = source(bytesOf("frames.tiff"));
    EXPECT_EQ(tiff->count(), 3U);
    EXPECT_EQ(seen(tiff->imageAtIndex(2)), "4x4 bbbb");
}

} // namespace
} // namespace caddis
