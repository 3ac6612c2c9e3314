#include "platform/base/Utf.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <random>

namespace caddis {
namespace {

TEST(Utf, ReadsWellFormedText)
{
    EXPECT_EQ(
        String::fromUtf8("na\xC3\xAFve \xE6\xBC\xA2 \xF0\x9F\x98\x80"), u"na\u00EFve \u6F22 \U0001F600");
    EXPECT_EQ(String::fromUtf8("\xEF\xBB\xBFx"), u"\uFEFFx") << "a byte-order mark stays";
    EXPECT_EQ(String::fromUtf8(std::string_view("a\0b", 3)).length(), 3U);
    EXPECT_EQ(String::fromUtf8("\xF4\x8F\xBF\xBF"), u"\U0010FFFF");
}

// The replacement practice of the WHATWG Encoding Standard: one U+FFFD per maximal subpart.
TEST(Utf, ReplacesEachMaximalIllFormedPart)
{
    EXPECT_EQ(String::fromUtf8("\xC0\xAF"), u"\uFFFD\uFFFD");
    EXPECT_EQ(String::fromUtf8("\xE0\x80\x80"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(String::fromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(String::fromUtf8("\xF0\x9F\x98"), u"\uFFFD") << "cut off at the end";
    EXPECT_EQ(String::fromUtf8("\xF0\x9F\x41"), u"\uFFFDA");
    EXPECT_EQ(String::fromUtf8("\xF4\x90\x80\x80\xFF"), u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_FALSE(String::fromStrictUtf8("long enough for a block\x80"));
    EXPECT_EQ(String::fromStrictUtf8("\xC3\xA4"), u"\u00E4"_s);
}

TEST(Utf, LoneSurrogatesSurviveInsideAndBecomeReplacementsOutside)
{
    const String lone(std::u16string_view(u"a\xD800z\xDC00", 4));
    EXPECT_EQ(lone[1], 0xD800);
    EXPECT_FALSE(lone.isWellFormed());
    EXPECT_EQ(firstLoneSurrogate(lone), 1U);
    EXPECT_EQ(lone.utf8(), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
    EXPECT_TRUE((u"\U0001F600"_s).isWellFormed());
}

// ASCII blocks, their remainders and long runs of other scripts meet at every offset.
TEST(Utf, RoundTripsAtEveryAlignment)
{
    std::minstd_rand random(7);
    const char16_t* const pieces[]
        = { u"a", u"sixteen ASCII ones", u"\u00E9", u"\u6F22\u5B57", u"\U0001F600" };
    std::u16string text;
    for (int round = 0; round < 500; ++round) {
        text += pieces[random() % 5];
        const String string(std::u16string_view(text).substr(random() % 2));
        ASSERT_EQ(String::fromUtf8(string.utf8()), string);
        ASSERT_EQ(String::fromStrictUtf8(string.utf8()), string);
    }
}

} // namespace
} // namespace caddis
