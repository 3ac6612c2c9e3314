#include "platform/dates/IsoDate.h"

#include "support/DateText.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class IsoDate : public testing::Test {
protected:
    static std::string read(std::u16string_view text) { return inUTC(readIsoDate(text)); }

    DefaultZone m_zone { TimeZone() };
};

TEST_F(IsoDate, ReadsDaysInAllTheirForms)
{
    for (const auto* text : { u"2003-12-31", u"2003/12/31", u"2003.12.31", u"20031231", u"031231",
             u"2003-365", u"2003365", u"03365", u"2004-W01-3", u"2004W013", u"2003-012-31", u"2003/12/31Z" })
        EXPECT_EQ(read(text), "2003-12-31 00:00:00") << String(text).utf8();
    EXPECT_EQ(read(u"2003-12"), "2003-12-01 00:00:00");
    EXPECT_EQ(read(u"2003"), "2003-01-01 00:00:00");
    EXPECT_EQ(read(u"2009-W53-7"), "2010-01-03 00:00:00");
}

TEST_F(IsoDate, ReadsTimesAndZones)
{
    EXPECT_EQ(read(u"2003-12-31T10:14:55Z"), "2003-12-31 10:14:55");
    EXPECT_EQ(read(u"2003/12/31t9:15-05:00"), "2003-12-31 14:15:00");
    EXPECT_EQ(read(u"2003-12-31 10:14:55 +0130"), "2003-12-31 08:44:55");
    EXPECT_EQ(read(u"20031231T101455-08"), "2003-12-31 18:14:55");
    EXPECT_EQ(read(u"20031231101455"), "2003-12-31 10:14:55");
    EXPECT_EQ(read(u"2003-12-31T10"), "2003-12-31 10:00:00");
    EXPECT_EQ(read(u"2003-12-31T23:59:60Z"), "2004-01-01 00:00:00") << "a leap second";
    EXPECT_EQ(read(u"2003-12-31T24:00:00Z"), "2004-01-01 00:00:00");
    EXPECT_EQ(read(u"2003-12-31T10:14:55 CEST"), "2003-12-31 08:14:55");
}

TEST_F(IsoDate, KeepsFractions)
{
    const auto date = readIsoDate(u"2001-01-01T00:00:01,250Z");
    ASSERT_TRUE(date);
    EXPECT_DOUBLE_EQ(date->secondsSinceReferenceDate, 1.25);
    EXPECT_EQ(read(u"2001-01-01T00:00:01.12345678901234567890123Z"), "2001-01-01 00:00:01");
}

TEST_F(IsoDate, RefusesEverythingElse)
{
    for (const auto* text : { u"", u"2003-13-01", u"2003-02-29", u"2003-366", u"2003-000",
             u"2003-12-31T25:00", u"2003-12-31T10:60", u"2003-12-31T10:14:61", u"2003-12-31x", u"2003-12-31T",
             u"2003-12-31T10:14:55+25", u"2003-12-31T10:14:555", u"2003-12/31", u"2003-1231", u"12-31-2003",
             u"2003-W54-1", u"2003-W01-8", u"0000-01-01", u"0000", u"123456789" })
        EXPECT_EQ(read(text), "nil") << String(text).utf8();
}

} // namespace
} // namespace caddis
