#include "markup/Feed.h"

#include "markup/FeedRendering.h"
#include "platform/files/FileSystem.h"
#include "support/DateText.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace caddis {
namespace {

const FeedSettings Plain { .linkableFeedStyleSheet = std::nullopt };

String contents(const std::filesystem::path& path)
{
    const auto data = FileSystem::contentsOfFile(String::fromUtf8(path.string()));
    return data ? String::fromUtf8(data->chars()) : String();
}

Array items(std::u16string_view text, const char* feedURL = nullptr)
{
    return getItemsOfFeed(
        String(text), feedURL ? URL::fromString(String::fromLatin1(feedURL)) : std::nullopt, Plain);
}

// One text of the first item of a feed that has only this item.
std::string part(std::u16string_view key, std::u16string_view item, const char* feedURL = nullptr)
{
    std::u16string feed = u"<rss><channel><item>";
    const Array all = items(feed.append(item).append(u"</item></channel></rss>"), feedURL);
    return all.empty() ? "no item"
                       : all.front().as<Dictionary>()->stringForKey(key).value_or(String()).utf8();
}

std::string tags(std::u16string_view text)
{
    std::string result;
    for (const Value& item : items(text)) {
        if (const Value* found = item.as<Dictionary>()->find(u"tags")) {
            for (const Value& tag : *found->as<Array>())
                result += '[' + tag.as<String>()->utf8() + ']';
        }
    }
    return result;
}

TEST(Feed, IsWhatTheFirstDecisiveTagSays)
{
    EXPECT_TRUE(isFeed(u"<?xml version='1.0'?><!-- <html> --><RSS version='2.0'>"_s));
    EXPECT_TRUE(isFeed(u"<rdf:RDF><html>"_s));
    EXPECT_TRUE(isFeed(u"text <feed/>"_s));
    EXPECT_FALSE(isFeed(u"<html><rss>"_s));
    EXPECT_FALSE(isFeed(u"</head><feed>"_s));
    EXPECT_FALSE(isFeed(u"<rss2><rdf-rdf><opml>"_s));
    EXPECT_FALSE(isFeed(String()));
}

TEST(Feed, IsCompleteWhenItsRootEnds)
{
    const auto state = [](std::u16string_view text) {
        const FeedState result = isFeedComplete(String(text));
        return std::pair(result.isFeed, result.complete);
    };
    EXPECT_EQ(state(u"<rss><channel></channel></rss>"), std::pair(true, true));
    EXPECT_EQ(state(u"<rss><channel></channel></rs"), std::pair(true, false));
    EXPECT_EQ(state(u"<feed/>"), std::pair(true, true));
    EXPECT_EQ(state(u"<rss><body></rss>"), std::pair(true, false)) << "a page's tag ends the search";
    EXPECT_EQ(state(u"<html></rss>"), std::pair(false, false));
}

TEST(Feed, BecomesThePageThatItsFolderHolds)
{
    const DefaultZone zone { TimeZone() };
    const auto url = URL::fromString(u"https://tides.example/feed.xml"_s);
    for (const auto& folder : std::filesystem::directory_iterator(CADDIS_TEST_DATA "/feeds")) {
        const String feed = contents(folder.path() / "in.xml");
        const String page = stringByConvertingFeed(feed, url, FeedStyleSheet::Linked, Plain);
        EXPECT_EQ(page.utf8(), contents(folder.path() / "out.html").utf8()) << folder.path();

        // The page is its items, one behind the other.
        const String list = stringByConvertingItemsToDisplayHTML(getItemsOfFeed(feed, url, Plain), Plain);
        const std::size_t body = list.view().find(u"<body>\n") + 7;
        EXPECT_TRUE(page.view().ends_with(list.view().substr(body))) << folder.path();
    }
}

TEST(Feed, LeavesATextThatIsNoFeedAsItIs)
{
    const String page = u"<html><item><title>a</title></item></html>"_s;
    EXPECT_TRUE(stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(page, true).isIdenticalTo(page));
    EXPECT_TRUE(getItemsOfFeed(page).empty());
    const String late = u"<head><rss><item><title>a</title></item>"_s;
    EXPECT_FALSE(isFeed(late));
    EXPECT_EQ(getItemsOfFeed(late).size(), 1U) << "a head does not end the search of the conversion";
    EXPECT_EQ(stringByConvertingFeed(u"<rss>"_s, std::nullopt, FeedStyleSheet::None),
        u"<html>\n<head>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n"
        u"\n</head>\n</html>");
}

TEST(Feed, TakesTheFirstTextOfEachField)
{
    EXPECT_EQ(part(u"date", u"<pubDate>a</pubDate><dc:date>b</dc:date>"), "a");
    EXPECT_EQ(part(u"date", u"<issued> </issued><published>b</published>"), "b");
    EXPECT_EQ(part(u"description", u"<summary>a</summary><description>b</description>"), "a");
    EXPECT_EQ(part(u"author", u"<name>a</name><author>b</author><author><name>c</name></author>"), "b");
    EXPECT_EQ(part(u"author", u"<author><name> </name></author><dc:creator>d</dc:creator>"), "d");
    EXPECT_EQ(part(u"title", u"<media:title>a</media:title><title/><title>b</title>"), "b");
}

TEST(Feed, ReadsSectionsForTheElementThatEndsNext)
{
    EXPECT_EQ(part(u"title", u"<title>a<![CDATA[ b &lt;i> ]]>c</title>"), "b <i>");
    EXPECT_EQ(part(u"title", u"<p><![CDATA[b]]></p><title>a</title>"), "a");
    EXPECT_EQ(part(u"content", u"<content type='HTML'><![CDATA[&lt;]]></content>"), "&lt;");
    EXPECT_EQ(part(u"content", u"<content><![CDATA[&lt;]]></content>"), "<");
    EXPECT_EQ(part(u"content", u"<content/>b</content>"), "") << "nothing says where it begins";
    EXPECT_EQ(part(u"title", u"<title><![CDATA[]]>a</title>"), "a");
    EXPECT_EQ(part(u"title", u"<title><![x]>a</title>"), "a");
}

TEST(Feed, ConvertsEntitiesInATextOnlyOnce)
{
    EXPECT_EQ(
        part(u"description", u"<description><title>&amp;lt;</title></description>"), "<title>&lt;</title>");
    EXPECT_EQ(part(u"title", u"<title>&lt;b&gt; caf&eacute;&nbsp;</title>"), "<b> caf\xC3\xA9");
    EXPECT_EQ(part(u"date", u"<pubDate>&eacute;&amp;</pubDate>"), "&eacute;&");
    EXPECT_EQ(part(u"title", u"<title>&lt</title>"), "&lt") << "too short to be converted";
}

TEST(Feed, LeadsToGuidOrLink)
{
    EXPECT_EQ(part(u"link", u"<link>http://a/</link><guid>http://b/</guid>"), "http://b/");
    EXPECT_EQ(
        part(u"link", u"<link>http://a/</link><guid isPermaLink='False'>http://b/</guid>"), "http://a/");
    EXPECT_EQ(part(u"guid", u"<guid isPermaLink='false'>http://b/</guid>"), "");
    EXPECT_EQ(part(u"link", u"<link>http://a/</link><guid>b-17</guid>"), "http://a/");
    EXPECT_EQ(part(u"link", u"<link>http://a/</link><guid>https://REDD.it/x</guid>"), "http://a/");
    EXPECT_EQ(part(u"link", u"<link rel='self' href='http://s/'/><link rel='next' href='http://n/'/>"),
        "http://n/");
    EXPECT_EQ(part(u"link", u"<link>/b?c</link>", "https://h.example/feed"), "https://h.example/b?c");
    EXPECT_EQ(part(u"link", u"<link>/b?c</link>"), "/b?c");
    EXPECT_EQ(part(u"link", u"<link>b</link>", "https://h.example/feed"), "b");
}

TEST(Feed, UnwrapsLinks)
{
    EXPECT_EQ(
        part(u"link", u"<link>HTTP://news.google.com/news/url?sa=t&amp;url=http://a/?b&amp;cid=1</link>"),
        "http://a/?b");
    EXPECT_EQ(part(u"link", u"<link>http://news.google.com/news/url?url=a</link>"),
        "http://news.google.com/news/url?url=a");
    EXPECT_EQ(part(u"link", u"<link>&lt;A href=\"http://a/\" class=\"b\"&gt;</link>"), "http://a/");
    EXPECT_EQ(part(u"link", u"<link>&lt;a href=http://a/ b&gt;</link>"), "http://a/");
    EXPECT_EQ(part(u"link", u"<link>&lt;a href=http://a/&gt;c</link>"), "http://a/");
    EXPECT_EQ(part(u"link", u"<link>&lt;a href=http://a/</link>"), "<a href=http://a/");
}

TEST(Feed, KeepsTagsAndEnclosuresOfEachItem)
{
    EXPECT_EQ(
        tags(u"<rss><item><category>a &amp; b</category><category> </category><category term='c'/></item>"
             u"<item></item><item><category>d</category></item>"),
        "[a & b][c][d]");
    const Array all = items(u"<rss><item><enclosure url='u&amp;v' length='7'/><enclosure url='w'/>"
                            u"<enclosure length='1'/></item><item/>");
    EXPECT_EQ(*all[0].as<Dictionary>()->find(u"enclosures"),
        Value(Array { Dictionary { { u"url"_s, u"u&v"_s }, { u"length"_s, u"7"_s } },
            Dictionary { { u"url"_s, u"w"_s } } }));
    EXPECT_EQ(all[1].as<Dictionary>()->find(u"enclosures"), nullptr);
}

TEST(Feed, GivesEveryItemThatEnds)
{
    EXPECT_EQ(items(u"<rss><item><title>a</title><item><title>b</title></item></item>").size(), 2U);
    EXPECT_EQ(items(u"<rss><item><title>a</title></item><title>b</title></item><item><title>c").size(), 2U);
    EXPECT_EQ(items(u"<rss><item/><item/><entry/>").size(), 2U) << "the first tag only begins the items";
    EXPECT_EQ(items(u"<rss><item><description>Array</description></item><item></item>").size(), 1U);
    EXPECT_EQ(items(u"<rss><item><![CDATA[</item></rss>").size(), 0U);
}

} // namespace
} // namespace caddis
