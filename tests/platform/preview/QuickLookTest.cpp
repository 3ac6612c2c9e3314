#include "platform/preview/QuickLook.h"

#include "support/JPEGBuilder.h"
#include "support/MovieClip.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// The colour of a picture tells which one was taken.
std::string coloured(unsigned colour, unsigned wide = 40, unsigned high = 20)
{
    return jpegFile(wide, high, [&](unsigned, unsigned) { return colour; });
}

constexpr unsigned Red = 0xFF0000;
constexpr unsigned Green = 0x00FF00;
constexpr unsigned Blue = 0x0000FF;

class Preview : public testing::Test {
protected:
    QuickLook quickLook() const
    {
        return QuickLook({ { m_folder.path("data") }, m_folder.path("cache"), "Mine" });
    }
    std::optional<Bitmap> shown(const String& path, Size maximum = { 64, 64 }, bool iconMode = false) const
    {
        return quickLook().thumbnail(path, maximum, iconMode);
    }
    /// "red 40x20", or "nothing".
    std::string look(const String& path, Size maximum = { 64, 64 }, bool iconMode = false) const
    {
        const auto bitmap = shown(path, maximum, iconMode);
        if (!bitmap)
            return "nothing";
        const std::uint8_t* const pixel = bitmap->row(bitmap->pixelsHigh / 2) + bitmap->pixelsWide / 2 * 4;
        const char* const colour = pixel[0] > 200 ? (pixel[1] > 200 ? "white" : "red")
            : pixel[1] > 200                      ? "green"
            : pixel[2] > 200                      ? "blue"
                                                  : "dark";
        return std::string(colour) + ' ' + std::to_string(bitmap->pixelsWide) + 'x'
            + std::to_string(bitmap->pixelsHigh);
    }

    TemporaryFolder m_folder;
};

TEST_F(Preview, WhatWeReadOurselvesIsShownAsItIs)
{
    PDFBuilder pdf;
    pdf.page("1 0 0 rg 0 0 200 100 re f", "/MediaBox [0 0 200 100]");
    EXPECT_EQ(look(m_folder.write("a.jpg", coloured(Red))), "red 40x20") << "never enlarged";
    EXPECT_EQ(look(m_folder.write("no-extension", coloured(Red)), { 10, 100 }), "red 10x5");
    EXPECT_EQ(look(m_folder.write("a.pdf", pdf.bytes())), "red 64x32");
    EXPECT_EQ(
        look(m_folder.write("a.eps",
            "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 30 40\n1 0 0 setrgbcolor 0 0 30 40 rectfill\n")),
        "red 30x40");
    const auto movie = shown(makeClip(m_folder, "clip.mkv", 4, "-c:v mpeg4 -q:v 3"), { 160, 160 });
    ASSERT_TRUE(movie);
    EXPECT_EQ(numberOfFrame(movie->pixels.bytes(), movie->pixelsWide, movie->pixelsHigh), 50);
}

TEST_F(Preview, DocumentsShowThePictureThatTheyCarry)
{
    const auto archive = [&](const std::string& name, const std::string& member) {
        return m_folder.write(name,
            ZipBuilder()
                .add("content.xml", "<text/>")
                .add("preview-web.jpg", coloured(Blue))
                .add(member, coloured(Red))
                .bytes());
    };
    EXPECT_EQ(look(archive("a.odt", "Thumbnails/thumbnail.png")), "red 40x20");
    EXPECT_EQ(look(archive("a.docx", "docProps/thumbnail.jpeg")), "red 40x20");
    EXPECT_EQ(look(archive("a.pages", "QuickLook/Thumbnail.jpg")), "red 40x20");
    EXPECT_EQ(look(archive("b.pages", "other.jpg")), "blue 40x20");
    const std::string comic = ZipBuilder().add("p2.jpg", coloured(Blue)).add("p1.jpg", coloured(Red)).bytes();
    EXPECT_EQ(look(m_folder.write("a.cbz", comic)), "red 40x20");
    EXPECT_EQ(look(m_folder.write("a.zip", comic)), "nothing");
    m_folder.write("b.key/QuickLook/Thumbnail.jpg", coloured(Green));
    EXPECT_EQ(look(m_folder.path("b.key")), "green 40x20");
}

TEST_F(Preview, SoundShowsItsCover)
{
    const std::string cover = m_folder.write("cover.jpg", coloured(Red)).utf8();
    const std::string song = m_folder.path("song.mp3").utf8();
    ASSERT_EQ(run("ffmpeg -v error -f lavfi -i sine=d=1 -i '" + cover
                  + "' -map 0 -map 1 -c:v copy -disposition:v attached_pic '" + song + "'")
                  .status,
        0);
    EXPECT_EQ(look(String::fromUtf8(song)), "red 40x20");
    const std::string plain = m_folder.path("plain.wav").utf8();
    ASSERT_EQ(run("ffmpeg -v error -f lavfi -i sine=d=1 '" + plain + "'").status, 0);
    EXPECT_EQ(look(String::fromUtf8(plain)), "nothing");
}

TEST_F(Preview, OthersAreAskedOnlyForWhatWeCanNotShow)
{
    m_folder.write("data/thumbnailers/dvi.thumbnailer",
        "[Thumbnailer Entry]\nExec=sh -c \"tail -n +2 %i > %o\"\nMimeType=application/x-dvi;image/jpeg\n");
    EXPECT_EQ(look(m_folder.write("a.dvi", "DVI\n" + coloured(Green, 80, 20))), "green 64x16");
    EXPECT_EQ(look(m_folder.write("b.xyz", "DVI\n" + coloured(Green))), "nothing");
    EXPECT_EQ(look(m_folder.write("a.jpg", coloured(Red))), "red 40x20");
}

TEST_F(Preview, IconsStandInOnlyWhereTheyAreWanted)
{
    m_folder.write("data/icons/Mine/index.theme", "[Icon Theme]\nDirectories=m\n[m]\nSize=40\n");
    m_folder.write("data/icons/Mine/m/application-x-dvi.png", coloured(Blue));
    m_folder.write("data/icons/Mine/m/text-x-generic.png", coloured(Green));
    m_folder.write("data/icons/Mine/m/folder.png", coloured(Red));
    EXPECT_EQ(look(m_folder.write("a.dvi", "DVI"), { 20, 20 }, true), "blue 20x10");
    EXPECT_EQ(look(m_folder.write("a.none", "text"), { 20, 20 }, true), "green 20x10");
    EXPECT_EQ(look(m_folder.path("data"), { 20, 20 }, true), "red 20x10");
    EXPECT_EQ(look(m_folder.write("a.jpg", coloured(Red)), { 20, 20 }, true), "red 20x10");
    EXPECT_EQ(look(m_folder.path("a.dvi")), "nothing");
    EXPECT_EQ(look(m_folder.path("missing.dvi"), { 20, 20 }, true), "nothing");
    EXPECT_EQ(look(m_folder.path("a.jpg"), { 0, 20 }, true), "nothing");
    EXPECT_FALSE(QLThumbnailImageCreate(*URL::fromString(u"http://a/b.jpg"_s), { 20, 20 }));
}

TEST_F(Preview, DamagedDocumentsShowNothing)
{
    const std::string archive = ZipBuilder().add("docProps/thumbnail.jpeg", "no picture").bytes();
    EXPECT_EQ(look(m_folder.write("a.docx", archive)), "nothing");
    EXPECT_EQ(look(m_folder.write("b.docx", archive.substr(0, archive.size() - 30))), "nothing");
    EXPECT_EQ(look(m_folder.write("a.mp4",
                  std::string("\0\0\0\x18"
                              "ftypisom\0\0\0\0",
                      16))),
        "nothing");
    EXPECT_EQ(look(m_folder.write("empty", "")), "nothing");
    EXPECT_EQ(look(m_folder.write("a.odt",
                  ZipBuilder()
                      .add({ .name = "Thumbnails/thumbnail.png", .bytes = "x", .size = 0x7FFFFFFF })
                      .bytes())),
        "nothing");
}

} // namespace
} // namespace caddis
