#include "media/MovieFileTypes.h"
#include "media/MovieFrames.h"

#include "support/MovieClip.h"
#include "support/Text.h"

namespace caddis {
namespace {

int posterNumber(const String& path)
{
    const auto movie = thumbnailImageForItemWithFile(path);
    if (!movie.image)
        return -1;
    return numberOfFrame(movie.image->pixels.bytes(), movie.image->pixelsWide, movie.image->pixelsHigh);
}

TEST(MovieFrames, ThePosterIsTheFrameAtHalfTheDurationInWholeSeconds)
{
    const TemporaryFolder folder;
    const auto poster = [&](const char* name, double seconds) {
        return posterNumber(makeClip(folder, name, seconds, "-c:v mpeg4 -q:v 3"));
    };
    EXPECT_EQ(poster("short.mp4", 1.88), 0);
    EXPECT_EQ(poster("three.mp4", 3), 25);
    EXPECT_EQ(poster("eight.mp4", 8), 100);
    EXPECT_EQ(poster("long.mp4", 32), 375 % 256) << "never later than 15 seconds";
}

TEST(MovieFrames, SoundHasADurationAndNoPicture)
{
    const TemporaryFolder folder;
    const String path = folder.path("tone.wav");
    ASSERT_EQ(run("ffmpeg -v error -f lavfi -i sine=d=3 '" + path.utf8() + "'").status, 0);
    const auto movie = thumbnailImageForItemWithFile(path);
    EXPECT_FALSE(movie.image);
    EXPECT_NEAR(movie.duration, 3, 0.01);
    EXPECT_EQ(movie.size, Size());
    EXPECT_FALSE(movie.lyrics);
    EXPECT_FALSE(thumbnailImageForItemWithFile(String()).image);
    EXPECT_FALSE(getSizeAndDurationAtPath(u"relative.mov"_s));
    EXPECT_NEAR(getSizeAndDurationAtPath(path)->duration, 3, 0.01);
}

TEST(MovieFrames, APlayerShowsItsItemsFrames)
{
    const TemporaryFolder folder;
    const String path = makeClip(folder, "clip.mov", 4, "-c:v mpeg4 -q:v 3");
    const auto item = std::make_shared<PlayerItem>(URL::fileURLWithPath(path));
    Player player(item);
    setMovieTime(player, 2.7);
    EXPECT_EQ(movieTime(player), 2);
    addVideoOutputWithPixelFormatType(*item, 32);
    const auto frame = currentFrameImage(player);
    ASSERT_TRUE(frame);
    EXPECT_EQ(numberOfFrame(frame->pixels.bytes(), frame->pixelsWide, frame->pixelsHigh), 50);
    EXPECT_FALSE(isPlaying(player));
    EXPECT_EQ(movieSize(player), (Size { 160, 96 }));
    EXPECT_FALSE(thumbnailImage(Player(nullptr)));
    EXPECT_EQ(movieTime(Player(nullptr)), 0);
}

TEST(MovieFileTypes, SupportAndTheListAnswerDifferentQuestions)
{
    for (const auto& path : { u"/a.WMV"_s, u"/a.flv"_s, u"/a.Gif"_s, u"/a.webm"_s })
        EXPECT_FALSE(supportsFile(path));
    EXPECT_TRUE(supportsFile(u"/a.avi"_s));
    EXPECT_TRUE(supportsFile(u"/a.txt"_s));
    EXPECT_TRUE(isQuickTimeExtension(u"WMV"_s, String()));
    EXPECT_FALSE(isQuickTimeExtension(u"DAT"_s, u"'TEXT'"_s));
    EXPECT_TRUE(isQuickTimeExtension(u"dat"_s, String()));
    EXPECT_TRUE(isQuickTimeExtension(String(), u"'MooV'"_s));
    EXPECT_FALSE(isQuickTimeExtension(String(), u"'moov'"_s));
    EXPECT_EQ(QuickTimeFileTypes().size(), 150U);
}

} // namespace
} // namespace caddis
