#include "platform/dates/CalendarFormat.h"

#include "support/DateText.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class CalendarFormat : public testing::Test {
protected:
    static std::string read(std::u16string_view text, std::u16string_view format)
    {
        return inUTC(dateWithString(text, format));
    }

    DefaultZone m_zone { TimeZone(3600) };
};

TEST_F(CalendarFormat, ReadsHttpForms)
{
    EXPECT_EQ(read(u"Sun, 06 Nov 1994 08:49:37 GMT", u"%a, %d %b %Y %H:%M:%S %Z"), "1994-11-06 08:49:37");
    EXPECT_EQ(read(u"Sunday, 06-Nov-94 08:49:37 GMT", u"%A, %d-%b-%y %H:%M:%S %Z"), "1994-11-06 08:49:37");
    EXPECT_EQ(read(u"Sun Nov  6 08:49:37 1994", u"%a %b %d %H:%M:%S %Y"), "1994-11-06 07:49:37");
    EXPECT_EQ(read(u"6 November 1994 +0200", u"%d %B %Y %z"), "1994-11-05 22:00:00");
}

TEST_F(CalendarFormat, BlanksMatchAnyWhiteSpaceAndOtherUnitsThemselves)
{
    EXPECT_EQ(read(u"SUN,6 nOV\t1994", u"%a, %d %b %Y"), "1994-11-05 23:00:00");
    EXPECT_EQ(read(u"100%1994", u"100%%%Y"), "1993-12-31 23:00:00");
    EXPECT_EQ(read(u"1.2.1994", u"%d-%m-%Y"), "nil");
    EXPECT_EQ(read(u"19940201T101500", u"%Y%m%dT%H%M%S"), "1994-02-01 09:15:00");
}

TEST_F(CalendarFormat, DemandsTheWholeText)
{
    EXPECT_EQ(read(u"1994-02-01 ", u"%Y-%m-%d"), "nil");
    EXPECT_EQ(read(u"1994-02-010", u"%Y-%m-%d"), "nil");
    EXPECT_EQ(read(u"1994-02", u"%Y-%m-%d"), "nil");
    EXPECT_EQ(read(u"94-02-01", u"%Y-%m-%d"), "nil") << "%Y has four digits";
    EXPECT_EQ(read(u"", u"%Y"), "nil");
    EXPECT_EQ(read(u"1994", u"%Y%Q"), "nil");
}

TEST_F(CalendarFormat, RefusesDaysAndTimesThatDoNotExist)
{
    EXPECT_EQ(read(u"1994-02-29", u"%Y-%m-%d"), "nil");
    EXPECT_EQ(read(u"2000-02-29", u"%Y-%m-%d"), "2000-02-28 23:00:00");
    EXPECT_EQ(read(u"1900-02-29", u"%Y-%m-%d"), "nil");
    EXPECT_EQ(read(u"1994-13-01", u"%Y-%m-%d"), "nil");
    EXPECT_EQ(read(u"1994-00-01", u"%Y-%m-%d"), "nil");
    EXPECT_EQ(read(u"1994-01-01 23:60", u"%Y-%m-%d %H:%M"), "nil");
    EXPECT_EQ(read(u"1994-01-01 24:00", u"%Y-%m-%d %H:%M"), "1994-01-01 23:00:00");
    EXPECT_EQ(read(u"0000-01-01", u"%Y-%m-%d"), "nil");
}

TEST_F(CalendarFormat, TwoDigitYearsPivotAtSeventy)
{
    EXPECT_EQ(read(u"70 +00", u"%y %z"), "1970-01-01 00:00:00");
    EXPECT_EQ(read(u"69 +00", u"%y %z"), "2069-01-01 00:00:00");
    EXPECT_EQ(read(u"7 +00", u"%y %z"), "nil");
}

TEST_F(CalendarFormat, ChecksNamesButNotWhetherTheWeekdayAgrees)
{
    EXPECT_EQ(read(u"Mon 1994-02-01 Z", u"%a %Y-%m-%d %Z"), "1994-02-01 00:00:00");
    EXPECT_EQ(read(u"Mox 1994-02-01 Z", u"%a %Y-%m-%d %Z"), "nil");
    EXPECT_EQ(read(u"Mon 1994-02-01 Z", u"%A %Y-%m-%d %Z"), "nil");
    EXPECT_EQ(read(u"1994 January", u"%Y %b"), "nil");
    EXPECT_EQ(read(u"1994-02-01 Nowhere", u"%Y-%m-%d %Z"), "nil");
}

TEST_F(CalendarFormat, AMissingYearIsThePresentOne)
{
    const auto date = dateWithString(u"01.03. 12:00", u"%d.%m. %H:%M");
    ASSERT_TRUE(date);
    const TimeZone& zone = TimeZone::defaultZone();
    EXPECT_EQ(zone.civilTime(*date).year, zone.civilTime(Date::now()).year);
    EXPECT_EQ(zone.civilTime(*date).month, 3);
}

} // namespace
} // namespace caddis
