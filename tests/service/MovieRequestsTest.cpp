#include "service/CaddisHelper.h"

#include "support/MovieClip.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Text.h"

namespace caddis {
namespace {

TEST(MovieRequests, AMovieShowsItsPosterAndSaysItsDurationSizeAndTags)
{
    const TemporaryFolder folder;
    const String clip
        = makeClip(folder, "clip.mp4", 2, "-c:v mpeg4 -metadata title=Clip -metadata lyrics=words");
    const Dictionary reply = CaddisHelper().posterImageForMovieWithFile(Value(clip));
    ASSERT_NE(reply.find(u"Duration"), nullptr);
    EXPECT_FLOAT_EQ(*reply.find(u"Duration")->as<float>(), 2);
    EXPECT_EQ(reply.stringForKey(u"Size"), u"{160, 96}"_s);
    const auto* const poster = reply.find(u"Thumbnail")->as<Data>();
    ASSERT_NE(poster, nullptr);
    EXPECT_TRUE(poster->chars().starts_with("II*"));
    EXPECT_EQ(reply.stringForKey(u"Lyrics"), u"words"_s);
    EXPECT_EQ(reply.find(u"Metadata")->as<Dictionary>()->stringForKey(u"title"), u"Clip"_s);
}

TEST(MovieRequests, WhatIsNoMovieHasNoDurationAndTheZeroSize)
{
    const TemporaryFolder folder;
    const Dictionary nothing { { u"Duration"_s, Value(0.0F) }, { u"Size"_s, u"{0, 0}"_s } };
    CaddisHelper helper;
    EXPECT_EQ(helper.posterImageForMovieWithFile(Value(folder.write("a.mp4", "no movie"))), nothing);
    EXPECT_EQ(helper.posterImageForMovieWithFile(Value(u"/a/path.WMV"_s)), nothing);
    EXPECT_EQ(helper.posterImageForMovieWithFile(std::nullopt), nothing);
}

TEST(MovieCommands, PrintWhatTheHelperKnowsOfMoviesAndPictures)
{
    const TemporaryFolder folder;
    const PrivateRuntimeDirectory runtime;
    const String clip = makeClip(folder, "clip.mp4", 2, "-c:v mpeg4 -metadata title=Clip");
    const Outcome shown = run(CADDIS_TOOL " movie " + clip.utf8());
    EXPECT_EQ(shown.status, 0);
    EXPECT_NE(shown.output.find("{160, 96}"), std::string::npos);
    EXPECT_NE(shown.output.find("Clip"), std::string::npos);
    const String page = folder.write("a.ps", "%!PS\n0 0 9 9 rectfill showpage\n");
    const std::string pdf = folder.path("a.pdf").utf8();
    EXPECT_EQ(run(CADDIS_TOOL " pdf-of-image " + page.utf8() + " -o " + pdf).status, 0);
    EXPECT_EQ(run("head -c 5 " + pdf).output, "%PDF-");
    EXPECT_EQ(run(CADDIS_TOOL " movie " + page.utf8()).status, 1);
    const std::string tone = folder.path("tone.wav").utf8();
    EXPECT_EQ(run("ffmpeg -v error -f lavfi -i sine=d=1 " + tone).status, 0);
    EXPECT_EQ(run(CADDIS_TOOL " movie " + tone).status, 0) << "sound has no size";
}

} // namespace
} // namespace caddis
