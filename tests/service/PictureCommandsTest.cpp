// The tool's commands for pictures, previews and posters.

#include "platform/image/ImageSource.h"
#include "support/JPEGBuilder.h"
#include "support/MovieClip.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class PictureCommands : public testing::Test {
protected:
    PictureCommands()
    {
        m_folder.write("a.jpg", jpegFile(100, 50, [](unsigned, unsigned) { return 0x4080FFU; }));
        m_folder.write("b.txt", "no picture");
    }

    Outcome caddis(const std::string& words) const
    {
        return run("cd " + m_folder.path().string() + " && " CADDIS_TOOL " " + words);
    }
    /// "public.png 20x10", or "nothing".
    std::string picture(const std::string& name) const
    {
        const auto source = ImageSource::createWithFile(m_folder.path(name));
        const auto info = source ? source->infoAtIndex(0) : std::nullopt;
        return info ? source->type().utf8() + ' ' + std::to_string(info->pixelsWide) + 'x'
                + std::to_string(info->pixelsHigh)
                    : "nothing";
    }

    TemporaryFolder m_folder;
    PrivateRuntimeDirectory m_runtime;
};

TEST_F(PictureCommands, AThumbnailIsShownOrWrittenAsItsNameSays)
{
    const Outcome shown = caddis("thumbnail a.jpg");
    EXPECT_EQ(shown.status, 0);
    EXPECT_NE(shown.output.find("PixelWidth   100\n"), std::string::npos) << shown.output;
    EXPECT_EQ(caddis("thumbnail a.jpg --size 20 -o a.png").status, 0);
    EXPECT_EQ(picture("a.png"), "public.png 20x10");
    EXPECT_EQ(
        caddis("thumbnail a.jpg --size 20 -o a.tiff && " CADDIS_TOOL " preview a.tiff --size 10 -o c.jpg")
            .status,
        0);
    EXPECT_EQ(picture("a.tiff"), "public.tiff 20x10");
    EXPECT_EQ(picture("c.jpg"), "public.jpeg 10x5");
    EXPECT_NE(caddis("thumbnail --json a.jpg").output.find("\"PixelHeight\": 50"), std::string::npos);
}

TEST_F(PictureCommands, SeveralPicturesGoIntoAFolder)
{
    EXPECT_EQ(caddis("thumbnail a.jpg b.txt -o out/").status, 1) << "one of them is no picture";
    EXPECT_EQ(picture("out/a.jpg.png"), "public.png 100x50");
    EXPECT_EQ(picture("out/b.txt.png"), "nothing");
    EXPECT_EQ(caddis("thumbnail a.jpg b.txt -o one.png").status, 2);
    EXPECT_EQ(caddis("preview a.jpg b.txt").status, 2);
    EXPECT_EQ(caddis("thumbnail a.jpg --size 0 -o a.png").status, 2);
}

TEST_F(PictureCommands, APreviewIsAPictureAnIconOrNothing)
{
    m_folder.write("share/icons/Adwaita/index.theme", "[Icon Theme]\nDirectories=m\n[m]\nSize=30\n");
    m_folder.write(
        "share/icons/Adwaita/m/text-x-generic.png", jpegFile(30, 30, [](unsigned, unsigned) { return 0U; }));
    const std::string icon = "preview b.txt --icon --size 30 -o icon.png";
    EXPECT_EQ(
        run("export XDG_DATA_HOME=$(realpath " + m_folder.path("share").utf8()
            + ") XDG_CONFIG_HOME=/nowhere; cd " + m_folder.path().string() + " && " CADDIS_TOOL " " + icon)
            .status,
        0);
    EXPECT_EQ(picture("icon.png"), "public.png 30x30");
    EXPECT_EQ(caddis("preview b.txt -o no.png").status, 1);
    EXPECT_EQ(picture("no.png"), "nothing");
}

TEST_F(PictureCommands, AMoviesPosterIsWrittenAndItsDurationIsReadable)
{
    makeClip(m_folder, "clip.mp4", 2.44, "-c:v mpeg4");
    EXPECT_EQ(caddis("movie clip.mp4 -o poster.png").status, 0);
    EXPECT_EQ(picture("poster.png"), "public.png 160x96");
    EXPECT_NE(caddis("movie clip.mp4").output.find("Duration   2.44\n"), std::string::npos);
    EXPECT_NE(caddis("movie --json clip.mp4").output.find("\"Duration\": 2.44,"), std::string::npos);
    EXPECT_EQ(caddis("movie a.jpg -o no.png").status, 1);
}

} // namespace
} // namespace caddis
