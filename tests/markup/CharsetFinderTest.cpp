#include "markup/CharsetFinder.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

String charset(const String& markup) { return markupCharset(markup).value_or(u"nil"_s); }

TEST(CharsetFinder, ReadsHeaders)
{
    EXPECT_EQ(headerCharset(u"text/html; charset=utf-8"), u"utf-8"_s);
    EXPECT_EQ(headerCharset(u"text/html;Charset='x y'; q=1"), u"x y"_s);
    EXPECT_FALSE(headerCharset(u"text/html"));
    EXPECT_EQ(headerEncoding(u"text/html; charset=latin1"), NSStringEncoding::ISOLatin1);
    EXPECT_EQ(headerEncoding(u"text/html"), NSStringEncoding::InvalidId);
    EXPECT_EQ(headerRefresh(u"5; url=http://example.org/?a=1"), u"http://example.org/?a=1"_s);
    EXPECT_EQ(headerRefresh(u"0;URL=\"x.html\""), u"x.html"_s);
    EXPECT_EQ(refreshInterval(u"2.5; url=x"), 2.5);
    EXPECT_EQ(refreshInterval(u"url=x"), 0);
}

TEST(CharsetFinder, FindsEachKindOfDeclaration)
{
    EXPECT_EQ(charset(u"<?xml version='1.0' encoding=\"euc-kr\"?><r/>"_s), u"euc-kr"_s);
    EXPECT_EQ(charset(u"<meta charset=\nutf-8\n>"_s), u"utf-8"_s);
    EXPECT_EQ(
        charset(u"<META HTTP-EQUIV=Content-Type CONTENT=\"text/html; charset=koi8-r\">"_s), u"koi8-r"_s);
    EXPECT_EQ(charset(u"<meta content='text/html' charset=big5>"_s), u"big5"_s);
    EXPECT_EQ(charset(u"<meta charset='x&amp;y'>"_s), u"x&y"_s);
    EXPECT_EQ(charset(u"<?xml encoding='x&amp;y'?>"_s), u"x&amp;y"_s) << "no entities there";
    EXPECT_EQ(markupEncoding(u"<meta charset=gbk>"_s), NSStringEncoding { 0x80000631 });
}

TEST(CharsetFinder, PassesOverWhatIsNoDeclaration)
{
    EXPECT_EQ(charset(u"<html><body><meta charset=utf-8>"_s), u"nil"_s);
    EXPECT_EQ(charset(u"<!-- <meta charset=x> --><script>'<meta charset=y>'</script></meta charset=z>"_s),
        u"nil"_s);
    EXPECT_EQ(charset(u"<xml encoding=a><meta name=charset content=b><meta charset=c>"_s), u"c"_s);
    EXPECT_EQ(charset(String()), u"nil"_s);
    EXPECT_EQ(markupEncoding(u"<p>"_s), NSStringEncoding::InvalidId);
}

TEST(CharsetFinder, TellsWhereTheNameStands)
{
    const String markup = u"<p><meta content=\"text/html; charset= latin1 \">"_s;
    const auto range = markupCharsetRange(markup);
    ASSERT_TRUE(range);
    EXPECT_EQ(markup.substring(*range), u"latin1"_s);
    EXPECT_FALSE(markupCharsetRange(u"<p>"_s));
}

} // namespace
} // namespace caddis
