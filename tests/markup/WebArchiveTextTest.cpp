#include "markup/WebArchiveText.h"

#include "foundation/ObjectExtensions.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/WebArchiveBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

WebArchive archiveOf(const WebArchiveBuilder& builder) { return *WebArchive::initWithData(builder.data()); }

WebArchiveBuilder framedPage()
{
    WebArchiveBuilder page("http://a/", "<body><p>Main caf\xC3\xA9");
    page.subresource("http://a/x.png", "PNG").subresource("http://a/x.png", "second");
    WebArchiveBuilder inner("http://c/", "<p>inner");
    inner.subresource("http://c/y.css", "p{}", "text/css");
    page.frame(WebArchiveBuilder("http://b/", "<p>first").frame(inner));
    page.frame(WebArchiveBuilder("http://d/", "<p>last"));
    return page;
}

TEST(WebArchive, FilesAreToldByTheirExtension)
{
    EXPECT_TRUE(isWebArchiveExtension(u"WebArchive"_s));
    EXPECT_FALSE(isWebArchiveExtension(u"webarchives"_s));
    EXPECT_FALSE(isWebArchiveExtension(std::nullopt));
    EXPECT_TRUE(isWebArchiveFile(u"/a/Page.WEBARCHIVE"_s));
    EXPECT_FALSE(isWebArchiveFile(u"/a.webarchive/page.html"_s));
    ASSERT_EQ(webArchiveFileTypes().size(), 2U);
    EXPECT_EQ(webArchiveFileTypes()[1], u"WEBARCHIVE");
}

TEST(WebArchive, TheTextOfThePageAndOfItsFramesFollowOneAnother)
{
    const WebArchive archive = archiveOf(framedPage());
    EXPECT_EQ(searchableText(archive), u"\n\nMain café\n\nfirst\n\ninner\n\nlast"_s);
    const ArchiveText both = searchableTextAndSource(archive);
    EXPECT_EQ(both.source, u"<body><p>Main café"_s);
    EXPECT_EQ(both.baseURL->absoluteString(), u"http://a/"_s);
}

TEST(WebArchive, APageWithoutTextLeavesThatOfItsFrames)
{
    WebArchiveBuilder picture("http://a/", "<body><img src=x.png></body>");
    EXPECT_EQ(searchableText(archiveOf(picture)), u""_s);
    EXPECT_EQ(searchableText(archiveOf(picture.frame({ "http://b/", "<p>frame" }))), u"\n\nframe"_s);
    EXPECT_EQ(searchableText(archiveOf({ "http://a/", "bytes", "image/png" })), u""_s);
    EXPECT_EQ(searchableText(archiveOf({ "http://a/", "no tag at all" })), u"\n\nno tag at all"_s);
}

TEST(WebArchive, ResourcesAndFramesAreFoundByTheirURL)
{
    const WebArchive archive = archiveOf(framedPage());
    const auto url = [](std::u16string_view text) { return *URL::fromString(String(text)); };
    EXPECT_EQ(subresourceForURL(archive, url(u"http://a/")), &archive.mainResource());
    EXPECT_EQ(subresourceForURL(archive, url(u"http://a/x.png"))->data().chars(), "PNG") << "the first one";
    EXPECT_EQ(subresourceForURL(archive, url(u"http://c/y.css"))->MIMEType(), u"text/css"_s);
    EXPECT_EQ(subresourceForURL(archive, url(u"http://e/")), nullptr);
    EXPECT_EQ(subArchiveForURL(archive, url(u"http://a/")), &archive);
    EXPECT_EQ(baseURL(*subArchiveForURL(archive, url(u"http://c/"))).absoluteString(), u"http://c/"_s);
    EXPECT_EQ(subArchiveForURL(archive, url(u"http://a/x.png")), nullptr);
    EXPECT_EQ(subArchiveForURL(archive, std::nullopt), nullptr);
}

TEST(WebArchive, AResourceIsReadInTheEncodingThatIsNamedElseInItsOwn)
{
    const auto source = [](std::string_view bytes, const std::string& encoding) {
        return *documentSource(archiveOf({ "http://a/", bytes, "text/html", encoding }));
    };
    EXPECT_EQ(source("\xEF\xBB\xBF<p>\xC3\xA9", "utf-8"), u"<p>é"_s) << "without the byte-order mark";
    EXPECT_EQ(source("<p>\xE9", "ISO-8859-1"), u"<p>é"_s);
    EXPECT_EQ(source("<meta charset=utf-8>\xC3\xA9", ""), u"<meta charset=utf-8>é"_s);
    EXPECT_FALSE(documentSource(archiveOf({ "http://a/", "body{}", "text/css" })));
}

TEST(WebArchive, WhatIsNoArchiveGivesNothing)
{
    const TemporaryFolder folder;
    for (const char* bytes : { "", "<p>page</p>", "<plist><dict/></plist>", "bplist00" })
        EXPECT_FALSE(searchableTextOfFile(folder.write("a.webarchive", bytes)).text) << bytes;
    EXPECT_FALSE(searchableTextOfFile(std::nullopt).baseURL);
    EXPECT_FALSE(documentSourceOfFile(folder.path("missing.webarchive")).source);
    EXPECT_FALSE(WebArchive::initWithData(WebArchiveBuilder("no url", "<p>x").data()));
    const String file = folder.write("a.webarchive", WebArchiveBuilder("http://a/", "<p>x").text());
    EXPECT_EQ(documentSourceOfFile(file).source, u"<p>x"_s);
    EXPECT_EQ(searchableTextOfFile(file).text, u"\n\nx"_s);
}

TEST(WebArchive, ArchivesInArchivesEndSomewhere)
{
    std::string list = WebArchiveBuilder("http://a/", "<p>x").text();
    const std::string frames = "<key>WebSubframeArchives</key><array>";
    const std::size_t at = list.find(frames) + frames.size();
    const std::string head = list.substr(list.find("<dict>"), at - list.find("<dict>"));
    std::string deep;
    for (int level = 0; level < 10000; ++level)
        deep += head;
    const auto archive = WebArchive::initWithData(Data::adopt(list.substr(0, at) + deep));
    EXPECT_FALSE(archive) << "deeper than property lists nest";
}

TEST(SafeRespondsToSelector, LogsWhatAClassDoesNotAnswer)
{
    const LogCapture log;
    const WebArchive archive = archiveOf({ "http://a/", "x" });
    EXPECT_TRUE(safeRespondsToSelector(archive.mainResource(), u"_stringValue"));
    EXPECT_TRUE(log.lines().empty());
    EXPECT_FALSE(safeRespondsToSelector(archive.mainResource(), u"rtfdData"));
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines().front(), u"Class WebResource does not respond to selector rtfdData."_s);
}

} // namespace
} // namespace caddis
