#include "foundation/URLExtensions.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(URLExtensions, ABaseIsWhatReferencesCanBeRelativeTo)
{
    const auto base = [](const String& text) {
        const auto url = baseURLForWebKit(*URL::fromString(text));
        return url ? url->absoluteString() : String();
    };
    EXPECT_EQ(base(u"http://a/b?c#d"_s), u"http://a/b?c"_s);
    EXPECT_EQ(base(u"http://a"_s), u"http://a"_s);
    EXPECT_EQ(base(u"file:///tmp"_s), u"file:///tmp/"_s) << "a folder";
    EXPECT_EQ(base(u"file:///tmp/no-such-file.html"_s), u"file:///tmp/no-such-file.html"_s);
    EXPECT_EQ(base(u"mailto:ada@example.org"_s), u""_s);
    EXPECT_EQ(base(u"data:text/html,x"_s), u""_s);
}

TEST(URLExtensions, LocalIsWhatNeedsNoGateway)
{
    const auto local = [](const String& text) { return isLocal(*URL::fromString(text)); };
    EXPECT_TRUE(local(u"file:///etc/passwd"_s));
    EXPECT_TRUE(local(u"file://server/share"_s));
    EXPECT_TRUE(local(u"data:text/plain,x"_s)) << "no host";
    EXPECT_TRUE(local(u"http:///x.png"_s)) << "an empty host";
    EXPECT_TRUE(local(u"http://127.0.0.1:8080/x.png"_s));
    EXPECT_FALSE(local(u"http://198.51.100.1/x.png"_s));
    EXPECT_FALSE(local(u"http://no-such-host.invalid/"_s));
}

} // namespace
} // namespace caddis
