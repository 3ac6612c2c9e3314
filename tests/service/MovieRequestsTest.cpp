#include "service/CaddisHelper.h"

#include "support/MovieClip.h"
#include "support/PDFBuilder.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Text.h"

namespace caddis {
namespace {

TEST(MovieRequests, AMovieSaysItsDurationSizeAndTags)
{
    const TemporaryFolder folder;
    const String clip
        = makeClip(folder, "clip.mp4", 2, "-c:v mpeg4 -metadata title=Clip -metadata lyrics=words");
    const Dictionary reply = CaddisHelper().posterImageForMovieWithFile(Value(clip));
    ASSERT_NE(reply.find(u"Duration"), nullptr);
    EXPECT_FLOAT_EQ(*reply.find(u"Duration")->as<float>(), 2);
    EXPECT_EQ(reply.stringForKey(u"Size"), u"{160, 96}"_s);
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

TEST(PreviewRequests, PDFAndPostScriptFilesHaveAPDFRepresentation)
{
    const TemporaryFolder folder;
    CaddisHelper helper;
    const std::string program
        = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 30 40\n0 0 9 9 rectfill showpage\n";
    const auto converted = helper.PDFImageRepOfFile(Value(folder.write("a.eps", program)));
    ASSERT_TRUE(converted);
    const String pdf = folder.write("a.pdf", converted->chars());
    EXPECT_EQ(helper.PDFImageRepOfFile(Value(pdf)), converted) << "the file's own bytes";
    EXPECT_FALSE(helper.PDFImageRepOfFile(Value(folder.write("a.png", "\x89PNG"))));
    EXPECT_FALSE(helper.PDFImageRepOfFile(Value(folder.write("b.pdf", PDFBuilder().data().chars()))));
    EXPECT_FALSE(helper.PDFImageRepOfFile(std::nullopt));
}

} // namespace
} // namespace caddis
