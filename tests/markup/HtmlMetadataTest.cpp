#include "markup/HtmlMetadata.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

using Found = std::optional<String>;

TEST(HtmlMetadata, JoinsTheContentsOfEveryAcceptedName)
{
    const String html = u"<html><head><META NAME=Keywords CONTENT='a, b'><meta name=keywords content=\"\">"
                        u"<meta name='DC.keywords' content=c><meta name=author content='A &amp; B'>"
                        u"<meta name=IndexTitle content=I><meta name='dc.rights' content=free></head>"
                        u"<body><meta name=keywords content=late>"_s;
    EXPECT_EQ(htmlMetaKeywords(html), u"a, b c"_s);
    EXPECT_EQ(htmlMetaAuthor(html), u"A &amp; B"_s);
    EXPECT_EQ(htmlMetaIndexTitle(html), u"I"_s);
    EXPECT_EQ(htmlMetaCopyright(html), u"free"_s);
    EXPECT_EQ(htmlMetaAttributeWithName(html, u"AUTHOR"), u"A &amp; B"_s);
    EXPECT_EQ(htmlMetaDescription(html), Found());
    EXPECT_EQ(htmlMetaTitle(String()), Found());
}

TEST(HtmlMetadata, OnlyTheThirdNameMayBeAProperty)
{
    EXPECT_EQ(htmlMetaTitle(u"<meta property=\"og:title\" content=\"A\">"_s), u"A"_s);
    EXPECT_EQ(htmlMetaTitle(u"<meta name=\"og:title\" content=\"A\">"_s), u"A"_s);
    EXPECT_EQ(htmlMetaTitle(u"<meta property=\"title\" content=\"A\">"_s), Found());
    EXPECT_EQ(htmlMetaKeywords(u"<meta property content=A>"_s), Found());
    EXPECT_EQ(htmlMetaDescription(u"<meta name=x property='OG:Description' content=B>"_s), u"B"_s);
}

TEST(HtmlMetadata, OnePassGivesTheSameFive)
{
    const String html
        = u"<meta name=keywords content=k><meta name=title content=t1><meta property=og:title content=t2>"
          u"<meta name=description content=d><meta name=indextitle content=i><meta name=dc.date content=2001>"
          u"<meta http-equiv=Last-Modified content=2002><meta http-equiv=Refresh content='5; url=x'>"_s;
    const HtmlMetaSummary summary = htmlMetaKeywordsDescriptionTitleIndexTitleDate(html);
    EXPECT_EQ(summary.keywords, htmlMetaKeywords(html));
    EXPECT_EQ(summary.title, u"t1 t2"_s);
    EXPECT_EQ(summary.description, u"d"_s);
    EXPECT_EQ(summary.indexTitle, u"i"_s);
    EXPECT_EQ(summary.date, u"2001 2002"_s);
    EXPECT_EQ(htmlMetaDate(html), u"2001"_s);
    EXPECT_EQ(htmlMetaRefresh(html), u"5; url=x"_s);
    EXPECT_EQ(htmlMetaHTTPEquiv(html, u"last-modified"), u"2002"_s);
    EXPECT_EQ(htmlMetaHTTPEquiv(html, u"expires"), Found());
}

TEST(HtmlMetadata, CollectsAllNamedTags)
{
    const String html = u"<meta name=B content=1><meta name=a content='x &lt; y'><meta name=b content=2>"
                        u"<meta charset=utf-8><meta name=empty content=''>"_s;
    const Dictionary attributes = htmlMetaAttributes(html);
    EXPECT_EQ(attributes.count(), 2U);
    EXPECT_EQ(attributes.stringForKey(u"B"), u"1 2"_s);
    EXPECT_EQ(attributes.stringForKey(u"a"), u"x &lt; y"_s);
    EXPECT_EQ(htmlMetaAttributesByConvertingEntitiesToCharacters(html).stringForKey(u"a"), u"x < y"_s);
    EXPECT_TRUE(htmlMetaAttributes(u"<p>"_s).isEmpty());
}

TEST(HtmlMetadata, StripsTagsOfOneName)
{
    EXPECT_EQ(
        stringByStrippingMetaAttributeWithName(
            u"<head><meta name=A content=1>x<meta name=b content=2><body><meta name=a content=3>"_s, u"a"),
        u"<head>x<meta name=b content=2><body><meta name=a content=3>"_s);
    const String without = u"<meta name=b content=2>"_s;
    EXPECT_TRUE(stringByStrippingMetaAttributeWithName(without, u"a").isIdenticalTo(without));
}

TEST(HtmlMetadata, TheTitleStandsBeforeItsEndTag)
{
    EXPECT_EQ(htmlTitle(u"<title>A &amp; B</title>"_s), u"A &amp; B"_s);
    EXPECT_EQ(htmlTitle(u"<title><b>A</b> B</TITLE>"_s), u" B"_s) << "the last run";
    EXPECT_EQ(htmlTitle(u"<title></title><title>B</title>"_s), String());
    EXPECT_EQ(htmlTitle(u"<body><title>A</title>"_s), Found());
    EXPECT_EQ(htmlTitle(u"<title>A"_s), Found());
    EXPECT_EQ(normalizedHtmlTitle(u"<title>\n A &amp;\tB&nbsp; </title>"_s), u"A & B"_s);
    EXPECT_EQ(normalizedHtmlTitle(u"<title>&nbsp; </title>"_s), Found());
}

TEST(HtmlMetadata, DatesHaveManyNames)
{
    for (const std::u16string_view name : { u"date", u"PDate", u"date.modified", u"DC.date.issued",
             u"article_date", u"displayDate", u"sailthru.pubdate", u"x:publicationDate", u"_date" })
        EXPECT_TRUE(isDateAttribute(name)) << readable(name);
    for (const std::u16string_view name : { u"dates", u"update", u"dc.dat", u"", u"articledate" })
        EXPECT_FALSE(isDateAttribute(name)) << readable(name);
    EXPECT_EQ(
        htmlDate(u"<meta name=dates content=1><meta name=date><meta property=x_date content=2>"_s), u"2"_s);
    EXPECT_EQ(htmlDate(u"<meta name=x property=x_date content=2>"_s), Found()) << "the name comes first";
    EXPECT_EQ(htmlDate(u"<meta http-equiv=last-modified content=3>"_s), u"3"_s);
    EXPECT_EQ(htmlDate(u"<body><meta name=date content=4>"_s), Found());
}

TEST(HtmlMetadata, TheCanonicalAddress)
{
    EXPECT_EQ(
        htmlCanonicalURL(u"<link rel=alternate href=a><LINK REL=Canonical HREF=' http://b/?c&amp;d '/>"_s),
        u"http://b/?c&d"_s);
    EXPECT_EQ(htmlCanonicalURL(u"</link rel=canonical href=a><body><link rel=canonical href=b>"_s), Found());
}

} // namespace
} // namespace caddis
