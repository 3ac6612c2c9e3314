#include "text/NumericValues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace caddis {
namespace {

TEST(NumericValues, IntegersStopAtTheFirstOtherUnitAndClamp)
{
    EXPECT_EQ(intValue(u" \n+42px"), 42);
    EXPECT_EQ(integerValue(u"-1001"), -1001);
    EXPECT_EQ(integerValue(u"--1"), 0);
    EXPECT_EQ(integerValue(u""), 0);
    EXPECT_EQ(intValue(u"2147483648"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(intValue(u"-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(longLongValue(u"-99999999999999999999999"), std::numeric_limits<std::int64_t>::min());
}

TEST(NumericValues, TruthStartsWithAYesATrueOrADigit)
{
    for (const char16_t* text : { u"YES", u"true", u" 1", u"-007", u"+y", u"t" })
        EXPECT_TRUE(boolValue(text));
    for (const char16_t* text : { u"", u"NO", u"000", u"0x1", u"no 1", u"\u0661" })
        EXPECT_FALSE(boolValue(text));
}

TEST(NumericValues, DoublesAreDecimal)
{
    EXPECT_EQ(doubleValue(u" 12.5px"), 12.5);
    EXPECT_EQ(doubleValue(u"-.5e2"), -50);
    EXPECT_EQ(doubleValue(u"3e"), 3);
    EXPECT_EQ(doubleValue(u"0x10"), 0);
    EXPECT_EQ(doubleValue(u"infinity"), 0);
    EXPECT_EQ(doubleValue(u"-1e999"), -HUGE_VAL);
    EXPECT_EQ(doubleValue(u"1e-999"), 0);
}

} // namespace
} // namespace caddis
