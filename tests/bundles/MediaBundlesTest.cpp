#include "bundles/BundleHost.h"
#include "support/TemporaryFolder.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::string little(std::uint32_t value, std::size_t size = 4)
{
    return { reinterpret_cast<const char*>(&value), size };
}

std::string big(std::uint32_t value) { return little(__builtin_bswap32(value)); }

std::string pngChunk(const std::string& name, const std::string& bytes)
{
    const std::string body = name + bytes;
    const auto sum = crc32_z(0, reinterpret_cast<const Bytef*>(body.data()), body.size());
    return big(static_cast<std::uint32_t>(bytes.size())) + body + big(static_cast<std::uint32_t>(sum));
}

// Two seconds of silence, eight bits, 8000 a second, with a title in a LIST chunk.
std::string waveFile()
{
    const std::string format
        = little(1, 2) + little(1, 2) + little(8000) + little(8000) + little(1, 2) + little(8, 2);
    const std::string info = "INFOINAM" + little(6) + std::string("Waves\0", 6);
    const std::string chunks = "WAVEfmt " + little(16) + format + "LIST"
        + little(static_cast<std::uint32_t>(info.size())) + info + "data" + little(16000)
        + std::string(16000, '\x80');
    return "RIFF" + little(static_cast<std::uint32_t>(chunks.size())) + chunks;
}

class MediaBundles : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes)
    {
        return m_folder.write(name, bytes).utf8();
    }

private:
    TemporaryFolder m_folder;
};

TEST_F(MediaBundles, MeasurePictures)
{
    if (!hasBundle("Image"))
        GTEST_SKIP();
    const std::string png = "\x89PNG\r\n\x1A\n"
        + pngChunk("IHDR", big(3) + big(4) + std::string("\x08\x02\0\0\0", 5)) + pngChunk("IDAT", "")
        + pngChunk("IEND", "");
    const auto picture = importWith("Image", "public.png", write("a.png", png));
    EXPECT_TRUE(picture.result);
    EXPECT_EQ(picture["kMDItemPixelWidth"] + "x" + picture["kMDItemPixelHeight"], "3x4");
    EXPECT_EQ(picture["kMDItemPixelCount"], "12");
    EXPECT_EQ(picture["kMDItemOrientation"], "1");
    EXPECT_FALSE(importWith("Image", "public.png", write("b.png", "no picture")).result);
}

TEST_F(MediaBundles, MeasureSound)
{
    const std::string path = write("a.wav", waveFile());
    if (hasBundle("Audio")) {
        const auto sound = importWith("Audio", "com.microsoft.waveform-audio", path);
        EXPECT_EQ(sound["kMDItemTitle"], "Waves");
        EXPECT_EQ(sound["kMDItemDurationSeconds"], "2");
        EXPECT_EQ(sound["kMDItemAudioSampleRate"], "8000");
        EXPECT_FALSE(importWith("Audio", "public.mp3", write("b.mp3", "no sound")).result);
    }
    if (hasBundle("Video")) {
        const auto sound = importWith("Video", "public.movie", path);
        EXPECT_EQ(sound["kMDItemTitle"], "Waves");
        EXPECT_EQ(sound["kMDItemDurationSeconds"], "2");
        EXPECT_EQ(sound["kMDItemMediaTypes"], "Sound");
        EXPECT_FALSE(importWith("Video", "public.movie", write("b.mov", "no movie")).result);
    }
}

TEST_F(MediaBundles, ListArchives)
{
    if (!hasBundle("Archive"))
        GTEST_SKIP();
    const auto archive = importWith("Archive", "public.cbz-archive",
        write("a.cbz",
            ZipBuilder()
                .add("pages/1.png", "x")
                .add("ComicInfo.xml", "<ComicInfo><Title>Lamps</Title><PageCount>12</PageCount></ComicInfo>")
                .bytes()));
    EXPECT_EQ(archive["kMDItemTextContent"], "pages/1.png\nComicInfo.xml\n");
    EXPECT_EQ(archive["kMDItemTitle"], "Lamps");
    EXPECT_EQ(archive["kMDItemNumberOfPages"], "12");
    EXPECT_FALSE(importWith("Archive", "public.zip-archive", write("b.zip", "PK")).result);
}

} // namespace
} // namespace caddis
