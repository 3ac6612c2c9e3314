#include "markup/FeedItem.h"

#include "markup/FeedRendering.h"
#include "support/DateText.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

const String Head = u"<html>\n<head>\n"
                    u"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n"_s;

String joined(std::initializer_list<std::u16string_view> parts)
{
    MutableString result;
    for (const std::u16string_view part : parts)
        result.append(part);
    return std::move(result).take();
}

Dictionary textItem(
    std::u16string_view title, std::u16string_view description, std::u16string_view content = {})
{
    return { { u"title"_s, String(title) }, { u"description"_s, String(description) },
        { u"content"_s, String(content) } };
}

const Dictionary Item { { u"title"_s, u"T"_s }, { u"description"_s, u"D"_s },
    { u"author"_s, u"<b>Ada</b>"_s }, { u"date"_s, u"2023-03-06T18:06:57Z"_s }, { u"link"_s, u"http://a/"_s },
    { u"tags"_s, Array { u"x"_s, u"y"_s } },
    { u"enclosures"_s, Array { Dictionary { { u"url"_s, u"http://a/b.mp3"_s } } } } };

TEST(FeedItem, IsSearchableWithAuthorAndTagsInTheHead)
{
    EXPECT_EQ(stringByConvertingItemToSearchableHTML(Item),
        joined(
            { Head, u"<meta name=\"author\" content=\" Ada\"/>\n<meta name=\"keywords\" content=\"x, y\"/>\n",
                u"</head>\n<body>\n\n<div class=\"feed_header\"><a class=\"feed_link\" "
                u"href=\"http://a/\">T</a><br/>",
                u"</div><div class=\"feed_article\">\nD\n</div>\n\n</body>\n</html>" }));
}

TEST(FeedItem, IsDisplayedWithBylineIconAndEnclosures)
{
    const DefaultZone zone { TimeZone(3600) };
    Dictionary item = Item;
    item.set(u"icon"_s, Value(u"http://a/i.png"_s));
    const String page = stringByConvertingItemToDisplayHTML(item, FeedStyleSheet::None);
    EXPECT_NE(
        page.view().find(
            u"<div class=\"feed_header\"><table><tr><td valign=\"centered\"><img src=\"http://a/i.png\"/>"
            u"</td><td valign=\"centered\"><a class=\"feed_link\" href=\"http://a/\">T</a><br/>"
            u"<font class=\"feed_date\"><b>Ada</b> - 6 March 2023, 19:06</font></td></table></div>"
            u"<div class=\"feed_article\">\nD\n<div class=\"feed_enclosures\"><p>\n"
            u"<a class=\"feed_enclosure\" href=\"http://a/b.mp3\">b.mp3</a><br/>\n</p></div>\n</div>\n"),
        std::u16string_view::npos)
        << page.utf8();
}

TEST(FeedItem, StandsInAListWithoutMetaTags)
{
    const Array list { Item, textItem(u"", u"", u"a <span>b</span>") };
    EXPECT_EQ(stringByConvertingItemsToSearchableHTML(list),
        joined({ Head, u"</head>\n<body>\n",
            u"\n<div class=\"feed_header\"><a class=\"feed_link\" href=\"http://a/\">T</a><br/></div>",
            u"<div class=\"feed_article\">\nD\n</div>\n",
            u"\n<div class=\"feed_header\"><br/></div><div class=\"feed_article\">\na b\n</div>\n",
            u"\n</body>\n</html>" }));
    const FeedSettings settings { .linkableFeedStyleSheet = u"/s/x.feeds.stylesheet.css"_s };
    EXPECT_NE(stringByConvertingItemsToDisplayHTML(list, settings).view().find(u"<link rel="),
        std::u16string_view::npos);
}

TEST(FeedItem, IsEmptyWhenItSaysNoMoreThanItsTitle)
{
    EXPECT_TRUE(isEmptyFeedItem({}));
    EXPECT_TRUE(isEmptyFeedItem(textItem(u"Title", u" \n")));
    EXPECT_TRUE(isEmptyFeedItem(textItem(u"Title", u"something", u"TITLE")));
    EXPECT_TRUE(isEmptyFeedItem(textItem(u"A title", u"a: TITLE!")));
    EXPECT_TRUE(isEmptyFeedItem(textItem(u"Title", u"<iframe src='x'></iframe>title")));
    EXPECT_FALSE(isEmptyFeedItem(textItem(u"Title", u"A title")));
    EXPECT_FALSE(isEmptyFeedItem({ { u"icon"_s, u"http://a/i.png"_s } }));
}

TEST(FeedStyleSheet, IsLinkedOrTakenIn)
{
    const TemporaryFolder folder;
    const String path = folder.write("my own.feeds.stylesheet.css", "p { color: red }\n");
    const FeedSettings settings { .linkableFeedStyleSheet = path };
    const Dictionary item = textItem(u"T", u"D");
    const String linked = stringByConvertingItemToDisplayHTML(item, FeedStyleSheet::Linked, settings);
    const String inlined = stringByConvertingItemToDisplayHTML(item, FeedStyleSheet::Inline, settings);
    const String link = joined({ u"<link rel=\"stylesheet\" type=\"text/css\" href=\"file://localhost",
        URL::fileURLWithPath(path).absoluteString().view().substr(7), u"\"/>\n" });
    EXPECT_TRUE(linked.view().starts_with(joined({ Head, link }).view())) << linked.utf8();
    EXPECT_TRUE(inlined.view().starts_with(
        joined({ Head, u"<style type=\"text/css\"><!--p { color: red }\n--></style>\n" }).view()));

    EXPECT_EQ(stringByReplacingLinkedStyleSheet(linked, settings), inlined);
    EXPECT_TRUE(stringByReplacingLinkedStyleSheet(inlined, settings).isIdenticalTo(inlined));
    const FeedSettings missing { .linkableFeedStyleSheet = folder.path("gone.feeds.stylesheet.css") };
    EXPECT_EQ(stringByReplacingLinkedStyleSheet(linked, missing),
        stringByConvertingItemToDisplayHTML(item, FeedStyleSheet::Inline, missing));
    const String cut = linked.substringTo(joined({ Head, link }).length() - 1);
    EXPECT_EQ(stringByReplacingLinkedStyleSheet(cut, missing), Head) << "nothing behind the link";
}

TEST(FeedStyleSheet, ComesWithTheLibrary)
{
    const auto path = FeedSettings::standard().linkableFeedStyleSheet;
    ASSERT_TRUE(path);
    EXPECT_TRUE(path->view().ends_with(u".feeds.stylesheet.css"));
    const String page = stringByConvertingItemToDisplayHTML(Item, FeedStyleSheet::Inline);
    EXPECT_NE(page.view().find(u".feed_article"), std::u16string_view::npos);
    EXPECT_EQ(page.view().find(u"-->"), page.view().rfind(u"-->")) << "the sheet's text ends its element";
}

} // namespace
} // namespace caddis
