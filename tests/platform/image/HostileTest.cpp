#include "PictureFiles.h"
#include "Seen.h"

#include "support/LibraryLeaks.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include "platform/image/Limits.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sys/resource.h>

// Files that are small and claim or cost much: nothing, or what can be had of them, in bounded memory.

namespace caddis {
namespace {

// Kilobytes by which `work` raised the most memory that this process ever had.
template <typename Work> long growth(Work work)
{
    const auto most = [] {
        rusage usage {};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    const long before = most();
    work();
    return most() - before;
}

constexpr long MostGrowth = 400 << 10;

std::string be32(std::uint32_t number)
{
    std::string text;
    for (const unsigned shift : { 24U, 16U, 8U, 0U })
        text += static_cast<char>(number >> shift & 0xFF);
    return text;
}

std::string le(std::uint64_t number, std::size_t bytes)
{
    std::string text;
    for (std::size_t index = 0; index < bytes; ++index)
        text += static_cast<char>(number >> (8 * index) & 0xFF);
    return text;
}

TEST(HostilePictures, AGIFOfAMillionFramesIsCountedToTheLimit)
{
    std::string file("GIF89a\1\0\1\0\x80\0\0\xFF\0\0\0\0\xFF", 19);
    for (int frame = 0; frame < 1'000'000; ++frame)
        file.append(",\0\0\0\0\1\0\1\0\0\2\2D\1\0", 15);
    const auto gif = sourceOf(file + ';');
    EXPECT_EQ(gif->count(), image::limits::MostFrames);
    EXPECT_EQ(seen(gif->imageAtIndex(0)), "1x1 rrrr");
    EXPECT_FALSE(gif->infoAtIndex(image::limits::MostFrames));
}

TEST(HostilePictures, ATIFFWhoseDirectoriesGoRoundEnds)
{
    std::string file = bytesOfPicture("frames.tiff");
    const auto u32 = [&](std::size_t at) {
        std::uint32_t value = 0;
        std::memcpy(&value, file.data() + at, 4);
        return value;
    };
    std::size_t last = u32(4);
    const auto next = [&] { return last + 2 + std::size_t { static_cast<std::uint8_t>(file[last]) } * 12; };
    while (u32(next()) != 0)
        last = u32(next());
    file.replace(next(), 4, file.substr(4, 4));
    const auto tiff = sourceOf(file);
    EXPECT_LE(tiff->count(), 4U);
    EXPECT_EQ(seen(tiff->imageAtIndex(0)), "8x8 rrrr");
}

TEST(HostilePictures, AnSVGSeesNothingButItself)
{
    const TemporaryFolder folder;
    const String secret = folder.write("secret.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'><path fill='red' d='M0 "
        "0h8v8H0z'/></svg>");
    const std::string head = "<svg xmlns='http://www.w3.org/2000/svg' "
                             "xmlns:xlink='http://www.w3.org/1999/xlink' width='8' height='8'>";
    const std::string path = "file://" + secret.utf8();
    EXPECT_EQ(seen(sourceOf(head + "<image width='8' height='8' xlink:href='" + path + "'/></svg>")
                       ->imageAtIndex(0)),
        "8x8 ----");
    const auto entity
        = sourceOf("<!DOCTYPE svg [<!ENTITY x SYSTEM '" + path + "'>]>" + head + "<text>&x;</text></svg>");
    EXPECT_TRUE(!entity || seen(entity->imageAtIndex(0)) != "8x8 rrrr");
    std::string entities = "<!DOCTYPE svg [<!ENTITY a0 'aaaaaaaaaaaaaaaa'>";
    for (int level = 1; level < 12; ++level) {
        const std::string inner = "&a" + std::to_string(level - 1) + ";";
        entities.append("<!ENTITY a").append(std::to_string(level)).append(" '");
        for (int count = 0; count < 8; ++count)
            entities += inner;
        entities += "'>";
    }
    EXPECT_LT(growth([&] {
        if (const auto bomb = sourceOf(entities + "]>" + head + "<text>&a11;</text></svg>"))
            bomb->imageAtIndex(0);
    }),
        MostGrowth);
}

TEST(HostilePictures, AnSVGHasAsManyElementsAsItShows)
{
    const std::string head = "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'>";
    std::string elements;
    for (int count = 0; count < 1000; ++count)
        elements += "<g/>";
    EXPECT_TRUE(sourceOf(head + elements + "</svg>"));
    EXPECT_TRUE(sourceOf("<!DOCTYPE svg [<!ENTITY ns 'http://www.w3.org/2000/svg'>]>" + head + "</svg>"));
    std::string many;
    for (int count = 0; count < 400; ++count)
        many += elements;
    EXPECT_FALSE(sourceOf(head + many + "</svg>"));
    EXPECT_FALSE(sourceOf("<!DOCTYPE svg [<!ENTITY e \"" + elements + "\">]>" + head + "&e;</svg>"));
    EXPECT_FALSE(sourceOf("<!DOCTYPE svg [<!ENTITY e '&#60;g/>'>]>" + head + "&e;</svg>"));
}

TEST(HostilePictures, SizesThatAreOnlyClaimedCostNothing)
{
    const std::uint32_t side = 65'535;
    std::string heic = bytesOfPicture("quarters.heic");
    for (std::size_t at = heic.find("ispe"); at != heic.npos; at = heic.find("ispe", at + 4))
        heic.replace(at + 8, 8, be32(side) + be32(side));
    const std::string bmp = "BM" + le(54, 4) + le(0, 4) + le(54, 4) + le(40, 4) + le(side, 4) + le(side, 4)
        + le(1, 2) + le(8, 2) + le(1, 4) + std::string(20, '\0');
    std::string psd = bytesOfPicture("quarters.psd");
    psd.replace(14, 8, be32(side) + be32(side));
    std::string tga("\0\0\x0A\0\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\x20\0", 18);
    const auto entry = [](std::uint64_t tag, std::uint64_t number) {
        return le(tag, 2) + le(4, 2) + le(1, 4) + le(number, 4);
    };
    const std::string tiff = "II*" + std::string(1, '\0') + le(8, 4) + le(9, 2) + entry(256, side)
        + entry(257, 900) + entry(258, 8) + entry(259, 8) + entry(262, 1) + entry(273, 8) + entry(277, side)
        + entry(278, 40) + entry(279, 100) + le(0, 4);
    const std::string gif("GIF89a\xFF\xFF\xFF\xFF\0\0\0,\0\0\0\0\xFF\xFF\xFF\xFF\0\2\2D\1\0;", 29);
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='65535' height='65535'/>";
    for (const std::string& file :
        { heic, bmp, psd, tga + "x", tiff, gif, std::string("P6 65535 65535 255\n"), svg }) {
        EXPECT_LT(growth([&] {
            if (const auto source = sourceOf(file)) {
                EXPECT_FALSE(source->imageAtIndex(0)) << source->type().utf8();
                source->thumbnailAtIndex(0, { .maxPixelSize = 64 });
            }
        }),
            MostGrowth);
    }
}

TEST(HostilePictures, RowsThatABitmapDoesNotHoldAreBlack)
{
    const auto bitmap = [](std::uint32_t wide, std::uint32_t high, const std::string& pixels) {
        return "BM" + le(54, 4) + le(0, 4) + le(54, 4) + le(40, 4) + le(wide, 4) + le(high, 4) + le(1, 2)
            + le(24, 2) + std::string(24, '\0') + pixels;
    };
    EXPECT_FALSE(sourceOf(bitmap(6'356'992, 12, "")));
    const std::string redRow("\0\0\xFF\0", 4);
    EXPECT_EQ(seen(sourceOf(bitmap(1, 2, redRow))->imageAtIndex(0)), "1x2 kkrr");
    const auto large = sourceOf(bitmap(60'000, 6'000, std::string(120'000, '\xFF')));
    EXPECT_EQ(seen(large->thumbnailAtIndex(0, { .maxPixelSize = 64 })), "64x6 kkkk");
}

TEST(HostilePictures, IconsOutsideTheirFileAreNone)
{
    const std::string entry = le(0x20101, 4) + le(0, 4);
    EXPECT_FALSE(sourceOf(le(0x10000, 4) + le(1, 2) + entry + le(100, 4) + le(1'000'000, 4)));
    EXPECT_FALSE(sourceOf(le(0x10000, 4) + le(1, 2) + entry + le(0xFFFFFFFF, 4) + le(22, 4)));
    EXPECT_FALSE(sourceOf(le(0x10000, 4) + le(0xFFFF, 2)));
    EXPECT_FALSE(sourceOf("icns" + be32(16) + "ic07" + be32(0xFFFFFFF0)));
    EXPECT_FALSE(sourceOf("icns" + be32(16) + "ic07" + be32(0)));
}

TEST(HostilePictures, RunsAndJumpsStayInside)
{
    const std::string head = "BM" + le(54, 4) + le(0, 4) + le(54 + 8, 4) + le(40, 4) + le(4, 4) + le(2, 4)
        + le(1, 2) + le(8, 2) + le(1, 4) + le(0, 8) + le(0, 4) + le(2, 4) + le(0, 4)
        + std::string("\0\0\xFF\0\xFF\0\0\0", 8);
    EXPECT_EQ(seen(sourceOf(head + std::string("\4\1\0\0\4\0\0\1", 8))->imageAtIndex(0)), "4x2 rrbb");
    EXPECT_EQ(seen(sourceOf(head + std::string("\0\2\xFF\xFF\xFF\1\0\2\xFF\xFF\xFF\1", 12))->imageAtIndex(0)),
        "4x2 rrrr");
    EXPECT_EQ(seen(sourceOf(head + std::string("\xFF\1\0\xFF\1", 5))->imageAtIndex(0)), "4x2 rrbb");
}

} // namespace
} // namespace caddis
