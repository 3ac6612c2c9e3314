#include "platform/base/MutableString.h"
#include "platform/base/UnitBuffer.h"

#include "support/FailingAllocation.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <thread>

namespace caddis {
namespace {

TEST(String, EmptyStringsAreOneAndTheSame)
{
    EXPECT_EQ(sizeof(String), sizeof(void*));
    EXPECT_TRUE(String().isIdenticalTo(String(u"")));
    EXPECT_TRUE(String::fromUtf8("").isIdenticalTo(MutableString(100).take()));
    EXPECT_EQ(*String().data(), u'\0');
    EXPECT_EQ(String().utf8(), "");
}

TEST(String, CopiesShareTheirUnitsAndEqualTextsNeedNot)
{
    const String text = u"text"_s;
    String copy = text;
    EXPECT_TRUE(copy.isIdenticalTo(text));
    copy = u"text"_s;
    EXPECT_FALSE(copy.isIdenticalTo(text));
    EXPECT_EQ(copy, text);
    copy = *&copy;
    EXPECT_EQ(copy, u"text");
    EXPECT_TRUE(text.substring({ 0, 4 }).isIdenticalTo(text));
    EXPECT_EQ(text.substring({ 1, 2 }), u"ex");
    EXPECT_LT(u"a"_s, u"ab"_s);
}

TEST(String, IsSharedBetweenThreads)
{
    const String shared = u"shared by all"_s;
    const auto work = [&] {
        for (int round = 0; round < 20000; ++round) {
            const String copy = shared;
            ASSERT_EQ(copy.length(), 13U);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(shared, u"shared by all");
}

TEST(MutableString, GrowsAndGivesItsStorageAway)
{
    MutableString text;
    for (int round = 0; round < 1000; ++round)
        text.append(u"abc").append(u'd');
    const char16_t* units = text.data();
    text.truncate(3999);
    String taken = std::move(text).take();
    EXPECT_EQ(taken.length(), 3999U);
    EXPECT_EQ(taken.data(), units) << "much of the room was in use, so nothing may be copied";
    EXPECT_EQ(taken[3998], u'c');
}

TEST(UnitBuffer, ReportsAFailedAllocation)
{
    const FailingAllocation failing;
    UnitBuffer small;
    EXPECT_TRUE(small.tryAllocate(256));
    UnitBuffer large;
    EXPECT_FALSE(large.tryAllocate(257));
    UnitBuffer impossible;
    EXPECT_FALSE(impossible.tryAllocate(NotFound));
}

} // namespace
} // namespace caddis
