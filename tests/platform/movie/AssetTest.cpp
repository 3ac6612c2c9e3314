#include "platform/movie/Asset.h"

#include "platform/base/Descriptor.h"
#include "support/MovieClip.h"
#include "support/Text.h"

#include <chrono>
#include <netinet/in.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/socket.h>

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
    for (const int frame : { 0, 1, 25, 26, 99, 175, 124, 60, 12, 199 })
        EXPECT_EQ(numberAt(asset, frame, ClipFramesPerSecond), frame + first) << readable(path);
    EXPECT_EQ(numberAt(asset, 75 * 4 + 3, ClipFramesPerSecond * 4), 75 + first) << "within a frame";
}

const std::string h264 = "-c:v libx264 -preset veryfast -bf 3 -g 120";

TEST(Asset, GivesTheVeryFrameInEveryContainer)
{
    const TemporaryFolder folder;
    expectExactFrames(makeClip(folder, "b-frames.mp4", 8, h264));
    expectExactFrames(makeClip(folder, "clip.mkv", 8, h264));
    expectExactFrames(makeClip(folder, "clip.ts", 8, h264));
    expectExactFrames(makeClip(folder, "clip.avi", 8, "-c:v mpeg4 -q:v 3 -g 60"));
    expectExactFrames(makeClip(folder, "clip.ogv", 8, "-c:v libtheora -q:v 9 -g 40"));
    expectExactFrames(makeClip(folder, "clip.webm", 8, "-c:v libvpx -b:v 1M -g 100"));
    expectExactFrames(makeClip(folder, "clip.flv", 8, "-c:v flv1 -q:v 3 -g 50"));
    expectExactFrames(makeClip(folder, "clip.wmv", 8, "-c:v wmv2 -q:v 3 -g 50"));
}

// Several frames share a packet with one time stamp, or there are no time stamps at all.
TEST(Asset, GivesTheVeryFrameWhereTimeStampsAreScarce)
{
    const TemporaryFolder folder;
    const std::string mpeg = "-c:v mpeg2video -q:v 3 -bf 2 -g 15";
    expectExactFrames(makeClip(folder, "clip.mpg", 8, mpeg));
    expectExactFrames(makeClip(folder, "clip.m2v", 8, mpeg));
    expectExactFrames(makeClip(folder, "clip.264", 8, h264));
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

// Tells whether a file has been opened, or a port of this machine called, since it was made.
class Witness {
public:
    explicit Witness(const String& file)
    {
        inotify_add_watch(m_watch.number(), file.utf8().c_str(), IN_OPEN);
        listen(m_socket.number(), 1); // At a port that the system chooses.
        sockaddr_in address {};
        socklen_t size = sizeof address;
        getsockname(m_socket.number(), reinterpret_cast<sockaddr*>(&address), &size);
        m_port = ntohs(address.sin_port);
    }

    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/clip.mp4"; }
    bool hasSeenAnything() const
    {
        pollfd waits[] = { { m_watch.number(), POLLIN, 0 }, { m_socket.number(), POLLIN, 0 } };
        return poll(waits, 2, 0) != 0;
    }

private:
    Descriptor m_watch { inotify_init1(IN_CLOEXEC) };
    Descriptor m_socket { socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0) };
    int m_port = 0;
};

TEST(Asset, OpensNothingThatAFileNames)
{
    const TemporaryFolder folder;
    const String clip = makeClip(folder, "clip.mp4", 2, "-c:v libx264");
    const Witness witness(clip);
    for (const std::string& named : { std::string("clip.mp4"), clip.utf8(), witness.url() }) {
        for (const std::string& list : { "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" + named + "\n",
                 "ffconcat version 1.0\nfile '" + named + "'\n",
                 "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nm=video 9 RTP/AVP 96\na=control:" + named + "\n",
                 "<?xml version='1.0'?><MPD><Period><BaseURL>" + named + "</BaseURL></Period></MPD>",
                 "[playlist]\nFile1=" + named + "\n" }) {
            const Asset asset = assetAt(folder.write("list.mp4", list));
            EXPECT_FALSE(asset.duration().isValid || asset.copyImageAtTime(Time::zero())) << list;
        }
    }
    EXPECT_FALSE(witness.hasSeenAnything());
    EXPECT_TRUE(assetAt(clip).duration().isValid);
    EXPECT_TRUE(witness.hasSeenAnything()) << "a witness that sees nothing is none";
}

TEST(Asset, EndsOnDamageInTime)
{
    const TemporaryFolder folder;
    for (const char* const name : { "clip.mp4", "clip.mkv", "clip.ts", "clip.avi" }) {
        const String clip = makeClip(folder, name, 4, "-c:v mpeg4 -q:v 2 -g 100");
        std::string noise = "head -c 4000 /dev/urandom | dd bs=1 conv=notrunc of='";
        noise.append(clip.utf8()).append("' seek=");
        ASSERT_EQ(run(noise + "6000").status, 0);
        ASSERT_EQ(run(noise + "20000").status, 0);
        const auto start = std::chrono::steady_clock::now();
        assetAt(clip).copyImageAtTime({ 2, 1, true });
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10)) << name;
    }
    EXPECT_FALSE(assetAt(folder.path("nothing")).duration().isValid);
    EXPECT_TRUE(assetAt(folder.write("empty.mp4", "")).videoTracks().empty());
}

} // namespace
} // namespace caddis
