#include "service/WebRequests.h"

#include "platform/richtext/RTFD.h"
#include "service/CaddisHelper.h"
#include "support/HTTPServer.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/WebArchiveBuilder.h"

#include <chrono>
#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(WebRequests, AWebArchiveGivesItsTextItsMarkupAndItsAddress)
{
    const TemporaryFolder folder;
    const String file = folder.write("page.webarchive", WebArchiveBuilder("http://a/b", "<p>text").text());
    CaddisHelper helper;
    EXPECT_EQ(helper.searchableTextOfWebArchive(Value(URL::fileURLWithPath(file))),
        (Dictionary {
            { u"String"_s, u"\n\ntext"_s }, { u"Source"_s, u"<p>text"_s }, { u"URL"_s, u"http://a/b"_s } }));
}

TEST(WebRequests, AnArchiveOfSomethingElseHasNoMarkup)
{
    const TemporaryFolder folder;
    const auto builder = WebArchiveBuilder("http://a/b.png", "PNG", "image/png");
    EXPECT_EQ(searchableTextOfWebArchive(folder.write("picture.webarchive", builder.text())),
        (Dictionary { { u"String"_s, u""_s }, { u"URL"_s, u"http://a/b.png"_s } }));
}

TEST(WebRequests, NoArchiveIsAnEmptyReply)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(searchableTextOfWebArchive(std::nullopt).isEmpty());
    EXPECT_TRUE(searchableTextOfWebArchive(folder.write("empty.webarchive", "")).isEmpty());
    EXPECT_TRUE(CaddisHelper().searchableTextOfWebArchive(Value(1)).isEmpty());
}

// 198.51.100.1 is an address for documentation (RFC 5737): nobody's, and never direct.
TEST(WebRequests, OnlyLocalThingsAreLoadedUnlessRemoteOnesAreAllowed)
{
    const HTTPServer server([](const std::string& path) {
        return path == "/away" ? HTTPServer::redirect("http://198.51.100.1/b.png")
                               : HTTPServer::answer("image/png", "picture");
    });
    const std::string page = "<img src=a.png><img src=/away alt=stopped>"
                             "<img src=http://198.51.100.1/c.png alt=remote><p>text";
    CaddisHelper helper;
    const auto start = std::chrono::steady_clock::now();
    const auto rtfd = helper.RTFDWithHTML(Value(Data::copyOf(page)),
        Value(*URL::fromString(String::fromUtf8(server.url("/page.html")))), false, std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << "nothing was waited for";
    ASSERT_TRUE(rtfd);
    const auto text = initWithRTFD(*rtfd);
    EXPECT_EQ(text->string(), u"\uFFFCstoppedremote\ntext\n"_s);
    EXPECT_EQ(text->attachments().at(0).file.contents.chars(), "picture");
    EXPECT_EQ(server.log(), (std::vector<std::string> { "/a.png", "/away" }));
}

TEST(WebRequests, WhatIsNotLocalIsNotSentNorFollowed)
{
    CaddisHelper helper;
    const auto request = [](const String& text) { return URLRequest { *URL::fromString(text) }; };
    const auto local = request(u"http://127.0.0.1/a.png"_s);
    const auto remote = request(u"http://198.51.100.1/a.png"_s);
    EXPECT_EQ(helper.webView(local, std::nullopt), local);
    EXPECT_EQ(helper.webView(remote, std::nullopt), std::nullopt);
    EXPECT_EQ(helper.webView(remote, local.url), std::nullopt) << "a redirect";
    EXPECT_EQ(helper.webView(local, remote.url), local);
}

TEST(WebRequests, PagesBecomeRTFD)
{
    CaddisHelper helper;
    const auto textOf = [&](const char* bytes, const std::optional<Value>& charset) {
        const auto rtfd = helper.RTFDWithHTML(Value(Data::copyOf(bytes)), std::nullopt, false, charset);
        return rtfd ? initWithRTFD(*rtfd)->string() : u"nil"_s;
    };
    EXPECT_EQ(textOf("<b>\xB1</b>", Value(u"iso-8859-2"_s)), u"\u0105"_s);
    EXPECT_EQ(textOf("\xC4\x85", Value(String())), u"\u0105"_s) << "an empty name says nothing";
    EXPECT_EQ(textOf("", std::nullopt), String());
    EXPECT_EQ(helper.RTFDWithHTML(std::nullopt, std::nullopt, true, std::nullopt), std::nullopt);
    EXPECT_EQ(helper.RTFDWithHTML(Value(u"text"_s), std::nullopt, true, std::nullopt), std::nullopt);
}

TEST(WebRequests, PagesAndSavedPagesAreRichText)
{
    const TemporaryFolder folder;
    CaddisHelper helper;
    const auto typeOf = [&](const String& file) {
        const auto reply = helper.attributedStringWithContentsOfFile(Value(file));
        const Value* const attributes = reply ? reply->find(u"DocumentAttributes") : nullptr;
        return attributes ? attributes->as<Dictionary>()->stringForKey(u"DocumentType") : std::nullopt;
    };
    EXPECT_EQ(typeOf(folder.write("a.html", "<p>x")), u"NSHTML"_s);
    EXPECT_EQ(typeOf(folder.write("a.webarchive", WebArchiveBuilder("http://a/b", "<p>x").text())),
        u"NSWebArchive"_s);
    EXPECT_EQ(typeOf(folder.write("a.txt", "<p>x")), u"NSPlainText"_s);
}

} // namespace
} // namespace caddis
