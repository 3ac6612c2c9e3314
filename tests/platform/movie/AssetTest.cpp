#include "platform/movie/Asset.h"

#include "support/MovieClip.h"
#include "support/Text.h"

#include <chrono>

namespace caddis {
namespace {

constexpr int Frames = 200; // Of a clip of eight seconds.

Asset assetAt(const String& path) { return Asset(URL::fileURLWithPath(path)); }

// The number in the picture; -1 without one.
int numberAt(const Asset& asset, std::int64_t value, std::int32_t timescale)
{
    const auto frame = asset.copyImageAtTime({ value, timescale, true });
    return frame ? numberOfFrame(frame->pixels.bytes(), frame->pixelsWide, frame->pixelsHigh) : -1;
}

// Backwards and forwards, at the frames' beginnings and within them.
void expectExactFrames(const String& path, int first = 0)
{
    ASSERT_FALSE(path.isEmpty()) << "the clip couldn't be made";
    const Asset asset = assetAt(path);
    for (const int frame : { 0, 1, 25, 26, 99, 175, 124, 60, 12 })
        EXPECT_EQ(numberAt(asset, frame, ClipFramesPerSecond), frame + first) << readable(path);
    EXPECT_EQ(numberAt(asset, 75 * 4 + 3, ClipFramesPerSecond * 4), 75 + first) << "within a frame";
}

TEST(Asset, GivesTheVeryFrameInEveryContainer)
{
    const TemporaryFolder folder;
    const std::string h264 = "-c:v libx264 -preset veryfast -bf 3 -g 120";
    expectExactFrames(makeClip(folder, "b-frames.mp4", 8, h264));
    expectExactFrames(makeClip(folder, "clip.mkv", 8, h264));
    expectExactFrames(makeClip(folder, "clip.ts", 8, h264));
    expectExactFrames(makeClip(folder, "clip.avi", 8, "-c:v mpeg4 -q:v 3 -g 60"));
}

TEST(Asset, KeepsToTheEditList)
{
    const TemporaryFolder folder;
    const String whole = makeClip(folder, "whole.mp4", 8, "-c:v libx264 -bf 3 -g 50");
    const String cut = folder.path("cut.mp4");
    ASSERT_EQ(
        run("ffmpeg -v error -ss 1.2 -i '" + whole.utf8() + "' -c copy '" + cut.utf8() + "'").status, 0);
    const Asset asset = assetAt(cut);
    EXPECT_EQ(numberAt(asset, 0, 25), 30);
    EXPECT_EQ(numberAt(asset, 50, 25), 80);
    EXPECT_NEAR(asset.duration().seconds(), 6.8, 0.1);
}

TEST(Asset, KnowsSizeAndDurationAndIgnoresRotation)
{
    const TemporaryFolder folder;
    const Asset wide
        = assetAt(makeClip(folder, "wide.mp4", 8, "-c:v libx264 -vf setsar=2 -metadata:s:v rotate=90"));
    EXPECT_NEAR(wide.duration().seconds(), double(Frames) / ClipFramesPerSecond, 0.05);
    ASSERT_EQ(wide.videoTracks().size(), 1U);
    EXPECT_EQ(wide.videoTracks()[0].naturalSize, (Size { 320, 96 })) << "pixels twice as wide as high";
    EXPECT_EQ(wide.copyImageAtTime(Time::zero())->pixelsWide, 320U);
    EXPECT_EQ(numberAt(wide, 120, 25), 120);
}

TEST(Asset, ReadsLyricsAndTagsOfEveryContainer)
{
    const TemporaryFolder folder;
    const auto sound = [&](const std::string& name, const std::string& lyricsKey) {
        String path = folder.path(name);
        run("ffmpeg -v error -f lavfi -i sine=d=2 -metadata title=Song -metadata artist=Singer -metadata "
            + lyricsKey + "='first second' '" + path.utf8() + "'");
        return path;
    };
    for (const auto& [name, key] : { std::pair("a.m4a", "lyrics"), std::pair("a.mp3", "lyrics-eng"),
             std::pair("a.flac", "LYRICS"), std::pair("a.ogg", "UNSYNCEDLYRICS") }) {
        const Asset asset = assetAt(sound(name, key));
        const auto metadata = asset.commonMetadata();
        ASSERT_GE(metadata.size(), 2U) << name;
        EXPECT_EQ(metadata[0].commonKey, u"title");
        EXPECT_EQ(metadata[1].value, Value(u"Singer"_s));
        EXPECT_EQ(asset.lyrics(), u"first second"_s) << name;
        EXPECT_TRUE(asset.videoTracks().empty());
        EXPECT_FALSE(asset.copyImageAtTime(Time::zero()));
    }
}

TEST(Asset, NeverFollowsAPlaylistAndEndsOnDamage)
{
    const TemporaryFolder folder;
    const String clip = makeClip(folder, "clip.mp4", 2, "-c:v libx264");
    const String list = folder.write("list.mp4", "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\nclip.mp4\n");
    EXPECT_FALSE(assetAt(list).duration().isValid);
    const String concat = folder.write("concat.mp4", "ffconcat version 1.0\nfile clip.mp4\n");
    EXPECT_FALSE(assetAt(concat).duration().isValid);
    EXPECT_FALSE(assetAt(folder.path("nothing")).duration().isValid);
    EXPECT_TRUE(assetAt(folder.write("empty.mp4", "")).videoTracks().empty());
    ASSERT_EQ(
        run("head -c 9000 /dev/urandom | dd of='" + clip.utf8() + "' bs=1 seek=2000 conv=notrunc").status, 0);
    const auto start = std::chrono::steady_clock::now();
    assetAt(clip).copyImageAtTime({ 1, 1, true });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

} // namespace
} // namespace caddis
