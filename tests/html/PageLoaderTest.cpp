#include "html/HTMLImport.h"
#include "html/MarkupFile.h"

#include "support/HTTPServer.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/WebArchiveBuilder.h"

#include <chrono>
#include <gtest/gtest.h>

namespace caddis {
namespace {

// Allows what it is told to, and remembers what it was asked.
class Gate : public WebResourceLoadDelegate {
public:
    std::optional<URLRequest> webView(
        const URLRequest& request, const std::optional<URL>& redirectResponse) override
    {
        asked.push_back(request.url.absoluteString().utf8() + (redirectResponse ? " (redirect)" : ""));
        return asked.back().find(refused) == std::string::npos ? std::optional(request) : std::nullopt;
    }
    bool allowsAddress(std::uint32_t) const override { return allowsAddresses; }

    std::string refused = "refused";
    bool allowsAddresses = true;
    std::vector<std::string> asked;
};

AttributedString imported(const std::string& page, const HTMLImportOptions& options = {})
{
    return attributedStringWithHTML(Data::copyOf(page), options);
}

bool isBold(const AttributedString& text) { return text.styles()[text.runs()[0].style].font.bold; }

TEST(PageLoader, WhatAPageRefersToIsFetchedRelativeToItsBase)
{
    const HTTPServer server([](const std::string& path) -> std::optional<std::string> {
        if (path == "/sub/a.css")
            return HTTPServer::answer("text/css", "@import 'b.css'; p { font-weight: normal }");
        if (path == "/sub/b.css")
            return HTTPServer::answer("text/css", "p { font-weight: normal } b { font-weight: 800 }");
        if (path == "/x.png?1")
            return HTTPServer::answer("image/png", "picture");
        if (path == "/frame.html")
            return HTTPServer::answer("text/html; charset=iso-8859-2", "<i>\xB9</i>");
        return "HTTP/1.1 404 Not Found\r\nContent-Length: 3\r\nConnection: close\r\n\r\nno!";
    });
    const auto base = URL::fromString(String::fromUtf8(server.url("/sub/page.html")));
    const AttributedString text
        = imported("<link rel=stylesheet href=a.css><p><b>x</b><img src='/x.png?1#y'>"
                   "<img src=missing.png alt=none><iframe src=../frame.html></iframe>",
            { .baseURL = base });
    EXPECT_EQ(text.string(), u"x\uFFFCnone\u0161\n"_s);
    EXPECT_TRUE(isBold(text));
    ASSERT_EQ(text.attachments().size(), 1U);
    EXPECT_EQ(text.attachments()[0].file.name, u"x.png");
    EXPECT_EQ(text.attachments()[0].file.contents.chars(), "picture");
}

TEST(PageLoader, TheDelegateIsAskedForEachRequestAndRedirect)
{
    const HTTPServer server([&](const std::string& path) {
        return path == "/moved" ? HTTPServer::redirect("/target") : HTTPServer::answer("image/png", path);
    });
    Gate gate;
    const auto base = URL::fromString(String::fromUtf8(server.url("/")));
    const AttributedString text = imported("<img src=a><img src=moved><img src=refused alt=no>",
        { .webResourceLoadDelegate = &gate, .baseURL = base });
    EXPECT_EQ(text.string(), u"\uFFFC\uFFFCno"_s);
    EXPECT_EQ(gate.asked,
        (std::vector<std::string> { server.url("/a"), server.url("/moved"), server.url("/refused"),
            server.url("/target") + " (redirect)" }));
    gate.refused = "target";
    EXPECT_EQ(
        imported("<img src=moved alt=no>", { .webResourceLoadDelegate = &gate, .baseURL = base }).string(),
        u"no"_s);
    gate.allowsAddresses = false;
    const std::size_t before = server.log().size();
    EXPECT_EQ(imported("<img src=a alt=no>", { .webResourceLoadDelegate = &gate, .baseURL = base }).string(),
        u"no"_s);
    EXPECT_EQ(server.log().size(), before) << "no connection was made";
}

TEST(PageLoader, AStalledServerCostsTheDeadlineAndNoMore)
{
    const HTTPServer server([](const std::string& path) {
        return path == "/stalls" ? std::nullopt
                                 : std::optional(HTTPServer::answer("text/css", "p { font-weight: bold }"));
    });
    const auto base = URL::fromString(String::fromUtf8(server.url("/")));
    const auto start = std::chrono::steady_clock::now();
    const AttributedString text = imported(
        "<link rel=stylesheet href=a.css><link rel=stylesheet href=stalls><p>text<img src=stalls alt=none>",
        { .timeout = 0.4F, .baseURL = base });
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_EQ(text.string(), u"textnone\n"_s);
    EXPECT_TRUE(isBold(text)) << "what had come by then counts";
    EXPECT_GE(seconds, 0.4);
    EXPECT_LT(seconds, 1.4);
}

TEST(PageLoader, RedirectsThatNeverEndAreGivenUp)
{
    const HTTPServer server([](const std::string&) { return HTTPServer::redirect("/again"); });
    const auto base = URL::fromString(String::fromUtf8(server.url("/")));
    EXPECT_EQ(imported("<img src=a alt=no>", { .baseURL = base }).string(), u"no"_s);
    EXPECT_EQ(server.log().size(), 11U) << "the request and ten redirects";
}

TEST(PageLoader, OnlySoManyThingsAreLoadedButThose)
{
    const HTTPServer server([](const std::string& path) { return HTTPServer::answer("image/png", path); });
    std::string page = "<img src=first>";
    for (int index = 0; index < 1'001; ++index)
        page += "<img alt=x src=data:image/png," + std::to_string(index) + ">";
    const auto base = URL::fromString(String::fromUtf8(server.url("/")));
    const AttributedString text = imported(page, { .baseURL = base });
    EXPECT_EQ(text.attachments().size(), 1'000U);
    EXPECT_EQ(text.string()[0], AttachmentCharacter) << "what was asked for before the limit comes";
}

TEST(PageLoader, FilesAreReadAndPagesThatLoadThemselvesEnd)
{
    const TemporaryFolder folder;
    folder.write("a.css", "@import 'a.css'; @import 'b.css'; p { font-weight: bold }");
    folder.write("b.css", "@import 'a.css';");
    folder.write("p.png", "picture");
    const std::string page
        = "<link rel=stylesheet href=a.css><p>x<img src=p.png><iframe src=self.html></iframe>"
          "<iframe src=self.html></iframe><img src=/dev/zero alt=no>";
    const String file = folder.write("self.html", page);
    const auto text = attributedStringWithMarkupFile(file, nullptr);
    ASSERT_TRUE(text);
    EXPECT_TRUE(isBold(*text));
    EXPECT_TRUE(text->string().view().starts_with(u"x\uFFFC"));
    EXPECT_LE(text->attachments().size(), 64U);
}

TEST(PageLoader, SavedPagesBringTheirResources)
{
    const TemporaryFolder folder;
    WebArchiveBuilder builder("http://a.invalid/b",
        "<p>x<img src=c.png><iframe src=d></iframe><img src=http://127.0.0.1/e alt=no>");
    builder.subresource("http://a.invalid/c.png", "picture");
    builder.frame(WebArchiveBuilder("http://a.invalid/d", "<b>y</b>"));
    Gate gate;
    const auto text = attributedStringWithMarkupFile(folder.write("a.webarchive", builder.text()), &gate);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->string(), u"x\uFFFCyno\n"_s);
    EXPECT_TRUE(gate.asked.empty());
    EXPECT_FALSE(attributedStringWithMarkupFile(
        folder.write("b.webarchive", WebArchiveBuilder("http://a/b", "x", "image/png").text()), nullptr));
}

TEST(PageLoader, FilesAreToldByNameAndContents)
{
    const TemporaryFolder folder;
    const auto reads = [&](const std::string& name, const std::string& bytes) {
        return attributedStringWithMarkupFile(folder.write(name, bytes), nullptr).has_value();
    };
    EXPECT_TRUE(reads("a.html", "text"));
    EXPECT_TRUE(reads("a.txt", " <!DOCTYPE HTML>x"));
    EXPECT_TRUE(reads("b.txt", "\xEF\xBB\xBF<?xml version='1.0'?>\n<html>"));
    EXPECT_FALSE(reads("c.txt", "text"));
    EXPECT_FALSE(reads("c.html", "{\\rtf1 x}"));
    EXPECT_FALSE(attributedStringWithMarkupFile(folder.path("missing.html"), nullptr));
}

} // namespace
} // namespace caddis
