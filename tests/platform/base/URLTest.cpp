#include "platform/base/URL.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(URL, ReadsItsParts)
{
    const auto url = URL::fromString(u"HTTP://me:pw@example.org:8080/a%20b/c/?q=/x#f"_s);
    ASSERT_TRUE(url);
    EXPECT_EQ(url->scheme(), u"HTTP");
    EXPECT_EQ(url->host(), u"example.org");
    EXPECT_EQ(url->path(), u"/a b/c"_s);
    EXPECT_FALSE(url->isFileURL());
    EXPECT_EQ(URL::fromString(u"http://[::1]:80/"_s)->host(), u"[::1]");
    EXPECT_EQ(URL::fromString(u"mailto:me@example.org"_s)->host(), u"");
    EXPECT_EQ(URL::fromString(u"mailto:me@example.org"_s)->path(), u"me@example.org"_s);
}

TEST(URL, RefusesWhatIsNoURL)
{
    for (const auto* text : { u"", u"/path", u":x", u"1a:b", u"a b:c", u"http://a b/", u"http://a/\n" })
        EXPECT_FALSE(URL::fromString(String(text))) << readable(text);
}

TEST(URL, CarriesAnyPathThatIsTextThereAndBack)
{
    for (const auto* path : { u"/", u"/tmp/a b%20#?.epub", u"/\u00FC/\u6F22\u5B57", u"/a;b:c@d&e=f+g,h!" }) {
        const URL url = URL::fileURLWithPath(String(path));
        EXPECT_TRUE(url.isFileURL());
        EXPECT_EQ(url.path(), String(path)) << url.absoluteString().utf8();
        EXPECT_TRUE(URL::fromString(url.absoluteString()));
    }
    EXPECT_EQ(URL::fileURLWithPath(u"/a b"_s).absoluteString(), u"file:///a%20b");
    EXPECT_EQ(URL::fromString(u"file://localhost/x"_s)->path(), u"/x"_s);
}

TEST(URL, GivesNoPathForEscapesThatAreNone)
{
    for (const auto* text : { u"file:///%", u"file:///%2", u"file:///%zz", u"file:///%FF", u"file:///a%00b" })
        EXPECT_EQ(URL::fromString(String(text))->path(), std::nullopt) << readable(text);
    const String plain = u"no escapes"_s;
    EXPECT_TRUE(stringByRemovingPercentEscapes(plain)->isIdenticalTo(plain));
}

} // namespace
} // namespace caddis
