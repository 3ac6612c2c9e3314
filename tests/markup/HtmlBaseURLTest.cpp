#include "markup/HtmlBaseURL.h"
#include "markup/StringURL.h"

#include "support/LogCapture.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

String base(const String& html)
{
    const auto url = htmlBaseURL(html);
    return url ? url->absoluteString() : u"nil"_s;
}

TEST(StringURL, NormalizesWhatPagesWrite)
{
    EXPECT_EQ(
        normalizedStringURL(u" \n/a b?c=1&amp;d=\u00FC\U0001F600\t"_s), u"/a%20b?c=1&d=%C3%BC%F0%9F%98%80"_s);
    EXPECT_EQ(normalizedStringURL(u"http://a/\r\n  b%20c%"_s), u"http://a/%20%20b%20c%"_s);
    EXPECT_EQ(normalizedStringURL(u"<\"x\">"_s), u"%3C%22x%22%3E"_s);
    EXPECT_FALSE(normalizedStringURL(u" \u00A0"_s));
    const String plain = u"http://example.org/?a=1&copy=2#x"_s;
    EXPECT_TRUE(normalizedStringURL(plain)->isIdenticalTo(plain));
}

TEST(StringURL, TellsRemoteWebURLs)
{
    EXPECT_TRUE(isRemoteWebKitStringURL(u"HTTPS://example.org"_s));
    EXPECT_TRUE(isRemoteWebKitStringURL(u"http://a:8080/b"_s));
    for (const String& text :
        { u"file:///a"_s, u"ftp://a/"_s, u"http:/a"_s, u"//a"_s, u"a.html"_s, u"http://"_s, String() })
        EXPECT_FALSE(isRemoteWebKitStringURL(text)) << text.utf8();
}

TEST(HtmlBaseURL, FindsTheFirstRemoteBase)
{
    const LogCapture log;
    EXPECT_EQ(base(u"<base href='http://a/b/'>"_s), u"http://a/b/"_s);
    EXPECT_EQ(base(u"<base target=x><base href=#top><BASE HREF=//a/b/ />"_s), u"http://a/b/"_s);
    EXPECT_EQ(base(u"<base href=/><base href=http://a/>"_s), u"nil"_s) << "there is none";
    EXPECT_EQ(base(u"<body><base href=http://a/>"_s), u"nil"_s);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(base(u"<base href='sub/'><base href=http://a/>"_s), u"http://a/"_s);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0], u"Invalid base: 'sub/'"_s);
}

TEST(HtmlBaseURL, SetsIt)
{
    const URL url = *URL::fromString(u"http://a/\"b"_s);
    const std::pair<String, String> cases[] = {
        { u"<html><head>\n<title>"_s, u"<html><head><BASE href=\"http://a/%22b\"/>\n\n<title>"_s },
        { u"<head><base href=x>\n<p>"_s, u"<head><BASE href=\"http://a/%22b\"/>\n<p>"_s },
        { u"<!DOCTYPE html><html lang=x><p>"_s,
            u"<!DOCTYPE html><html lang=x><BASE href=\"http://a/%22b\"/>\n<p>"_s },
        { u"<p><body><base href=x>"_s, u"<BASE href=\"http://a/%22b\"/>\n<p><body><base href=x>"_s },
        { String(), u"<BASE href=\"http://a/%22b\"/>\n"_s },
    };
    for (const auto& [html, expected] : cases)
        EXPECT_EQ(stringBySettingBaseURL(html, url), expected);
}

TEST(HtmlBaseURL, AddsItWhereThereIsNone)
{
    const URL url = *URL::fromString(u"http://a/"_s);
    const String based = u"<head><base href=http://b/>"_s;
    EXPECT_TRUE(stringByAddingBaseURL(based, url).isIdenticalTo(based));
    EXPECT_EQ(stringByAddingBaseURL(u"<head>"_s, url), u"<head><BASE href=\"http://a/\"/>\n"_s);
}

} // namespace
} // namespace caddis
