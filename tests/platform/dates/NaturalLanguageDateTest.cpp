#include "platform/dates/NaturalLanguageDate.h"

#include "support/DateText.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// Friday, 15 March 2024, 09:30 UTC.
constexpr Date Now = Date::fromUnixSeconds(1710495000);

class NaturalLanguageDate : public testing::Test {
protected:
    static std::string read(std::u16string_view text)
    {
        return inUTC(dateWithNaturalLanguageString(text, Now));
    }

    DefaultZone m_zone { TimeZone() };
};

TEST_F(NaturalLanguageDate, ReadsTheFormsOfMailAndProgramsInAnyOrder)
{
    EXPECT_EQ(read(u"Sun Jul 15 01:16:00 +0200 2012"), "2012-07-14 23:16:00");
    EXPECT_EQ(read(u"Thu, 01 Jan 04 19:48:21 GMT"), "2004-01-01 19:48:21");
    EXPECT_EQ(read(u"Thu, 31 Dec 23:55:55 2037 GMT"), "2037-12-31 23:55:55");
    EXPECT_EQ(read(u"Wed, 19 Feb 2012 22:40:00 GMT-01:01"), "2012-02-19 23:41:00");
    EXPECT_EQ(read(u"2009-11-10 23:00:00 +0100 UTC"), "2009-11-10 22:00:00");
    EXPECT_EQ(read(u"Mon, 10/Dec/07 20:35:03.250 PST"), "2007-12-11 04:35:03");
    EXPECT_EQ(read(u"19 Aug 2009 18:28:00 Europe/Berlin"), "2009-08-19 16:28:00");
}

TEST_F(NaturalLanguageDate, ReadsPhrases)
{
    EXPECT_EQ(read(u"last Tuesday at dinner"), "2024-03-12 19:00:00");
    EXPECT_EQ(read(u"next friday"), "2024-03-22 12:00:00");
    EXPECT_EQ(read(u"Sunday"), "2024-03-17 12:00:00") << "of the week that began on Monday";
    EXPECT_EQ(read(u"tomorrow at noon"), "2024-03-16 12:00:00");
    EXPECT_EQ(read(u"yesterday 17:05"), "2024-03-14 17:05:00");
    EXPECT_EQ(read(u"3 weeks ago"), "2024-02-23 12:00:00");
    EXPECT_EQ(read(u"a month ago"), "2024-02-15 12:00:00");
    EXPECT_EQ(read(u"last year"), "2023-03-15 12:00:00");
    EXPECT_EQ(read(u"now"), "2024-03-15 09:30:00");
    EXPECT_EQ(read(u"12:45"), "2024-03-15 12:45:00");
}

TEST_F(NaturalLanguageDate, ReadsHoursBeforeAndAfterNoon)
{
    EXPECT_EQ(read(u"3pm December 31, 2001"), "2001-12-31 15:00:00");
    EXPECT_EQ(read(u"December 31st, 2001, 12:30 a.m."), "2001-12-31 00:30:00");
    EXPECT_EQ(read(u"12/31/2001 12:30 PM"), "2001-12-31 12:30:00");
    EXPECT_EQ(read(u"Freitag am 5. März 2012 um 15:00 Uhr"), "2012-03-05 15:00:00");
    EXPECT_EQ(read(u"12/31/2001 15:30 AM"), "nil");
}

TEST_F(NaturalLanguageDate, GivesPlainNumbersTheirPlaces)
{
    EXPECT_EQ(read(u"12/31/01"), "2001-12-31 00:00:00");
    EXPECT_EQ(read(u"31/12/01"), "2001-12-31 00:00:00");
    EXPECT_EQ(read(u"03/04/2001 10:00"), "2001-04-03 10:00:00");
    EXPECT_EQ(read(u"99 12 31"), "1999-12-31 00:00:00");
    EXPECT_EQ(read(u"Fri, 2006/09/15 08:19:53 EDT"), "2006-09-15 12:19:53");
    EXPECT_EQ(read(u"12/2003"), "2003-12-01 00:00:00");
    EXPECT_EQ(read(u"2003 December 1 1"), "2003-12-01 00:00:00");
    EXPECT_EQ(read(u"5 May 1 1"), "2024-05-05 00:00:00");
}

TEST_F(NaturalLanguageDate, ReadsOtherLanguages)
{
    EXPECT_EQ(read(u"Do, 5. Dez. 2013 10:00:00"), "2013-12-05 10:00:00");
    EXPECT_EQ(read(u"2004/július/13T9:15-05:00"), "2004-07-13 14:15:00");
    EXPECT_EQ(read(u"3 DÉCEMBRE 2004"), "2004-12-03 00:00:00");
    EXPECT_EQ(read(u"2004년 05월 28일  01:31:15"), "2004-05-27 16:31:15");
    EXPECT_EQ(read(u"2004/05/25 오후 11:23:17"), "2004-05-25 14:23:17");
    EXPECT_EQ(read(u"2004年5月28日 上午 9:05"), "2004-05-28 09:05:00");
}

TEST_F(NaturalLanguageDate, GivesNothingRatherThanAGuess)
{
    for (const auto* text : { u"", u"hello", u"hello 1 1", u"??? 1 1", u"Chapter 12 1 1", u"12345678", u"17",
             u"5 grudnia 2003", u"10 ago 2012", u"2003/02/30", u"31/31/2003", u"1/2/3/2003 10:00",
             u"365 2003", u"2003-12-31T25:14:55Z", u"5 weeks", u"9999 years ago", u"1136239445", u"10:99" })
        EXPECT_EQ(read(text), "nil") << String(text).utf8();
    EXPECT_EQ(read(u"posted by Ann on 5 March 2012"), "2012-03-05 00:00:00");
}

} // namespace
} // namespace caddis
