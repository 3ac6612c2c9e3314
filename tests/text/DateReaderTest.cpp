#include "text/DateReader.h"

#include "support/DateText.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class DateReader : public testing::Test {
protected:
    static std::string read(std::u16string_view text) { return inUTC(date(String(text))); }

    void expectUnknown(std::u16string_view text)
    {
        const std::size_t before = m_log.lines().size();
        EXPECT_EQ(read(text), "nil") << String(text).utf8();
        ASSERT_EQ(m_log.lines().size(), before + 1) << String(text).utf8();
        EXPECT_EQ(m_log.lines().back(), String(u"Unknown date: " + std::u16string(text)));
    }

    DefaultZone m_zone { TimeZone(-3600) };
    LogCapture m_log;
};

TEST_F(DateReader, ReadsDigitsWithoutSeparators)
{
    EXPECT_EQ(read(u"20240131"), "2024-01-31 01:00:00");
    EXPECT_EQ(read(u"31012024"), "2024-01-31 01:00:00");
    EXPECT_EQ(read(u"20240131T101500"), "2024-01-31 11:15:00");
    expectUnknown(u"20241331");
    expectUnknown(u"32012024");
    expectUnknown(u"12345678");
    expectUnknown(u"11 January 2004"); // 15 units without a separator: taken for 20240131T101500
}

TEST_F(DateReader, ReadsDottedDays)
{
    EXPECT_EQ(read(u"31.01.24"), "2024-01-31 01:00:00");
    EXPECT_EQ(read(u"2024.01.31"), "2024-01-31 01:00:00");
    EXPECT_EQ(read(u"31.01.2024"), "2024-01-31 01:00:00");
    EXPECT_EQ(read(u"31.01.2024, 10:15:30"), "2024-01-31 11:15:30");
    EXPECT_EQ(read(u"31.01.2024, 10:15"), "2024-01-31 11:15:00");
    EXPECT_EQ(read(u"1.2.2024 10:15"), "2024-02-01 11:15:00");
    EXPECT_EQ(read(u"31/01/2024 10.15.30"), "2024-01-31 11:15:30");
    expectUnknown(u"31.13.24");
    expectUnknown(u"2024.01.31 10:15:30");
}

TEST_F(DateReader, ReadsFeedAndHeaderForms)
{
    EXPECT_EQ(read(u"Sun, 06 Nov 1994 08:49:37 GMT"), "1994-11-06 08:49:37");
    EXPECT_EQ(read(u"Sunday, 06-Nov-94 08:49:37 GMT"), "1994-11-06 08:49:37");
    EXPECT_EQ(read(u"Sun Nov  6 08:49:37 1994"), "1994-11-06 09:49:37");
    EXPECT_EQ(read(u"2024-01-31 10:15:30"), "2024-01-31 11:15:30");
    EXPECT_EQ(read(u"31-01-2024 10:15:30"), "2024-01-31 11:15:30");
    EXPECT_EQ(read(u"31/01/2024 10:15:30 CET"), "2024-01-31 09:15:30");
    EXPECT_EQ(read(u"31/01/2024 10:15:30"), "2024-01-31 11:15:30");
    EXPECT_EQ(read(u"31-01-2024 10:15"), "2024-01-31 11:15:00");
}

TEST_F(DateReader, ReadsGermanAndTurkishMonthsAsEnglishOnes)
{
    EXPECT_EQ(read(u"Tue, 15 Okt 2024 10:00:00 GMT"), "2024-10-15 10:00:00");
    EXPECT_EQ(read(u"Fri, 15 Mrz 2024 10:00:00 GMT"), "2024-03-15 10:00:00");
    EXPECT_EQ(read(u"Fri, 15 Mart 2024 10:00:00 GMT"), "2024-03-15 10:00:00");
    EXPECT_EQ(read(u"Wed, 15 Mai 2024 10:00:00 GMT"), "2024-05-15 10:00:00");
    EXPECT_EQ(read(u"Sunday, 15-Dez-24 10:00:00 GMT"), "2024-12-15 10:00:00");
    EXPECT_EQ(read(u"Fri, 15 Mrzt 2024 10:00:00 GMT"), "2024-03-15 10:00:00");
}

TEST_F(DateReader, PutsTheDayFirstBetweenSlashes)
{
    EXPECT_EQ(read(u"01/02/2024"), "2024-02-01 01:00:00");
    EXPECT_EQ(read(u"13/02/2024"), "2024-02-13 01:00:00");
    EXPECT_EQ(read(u"02/13/2024"), "2024-02-13 01:00:00");
    EXPECT_EQ(read(u"2024/02/13"), "2024-02-13 01:00:00");
    EXPECT_EQ(read(u"2024/13/02"), "2024-02-13 01:00:00");
    // The number behind the slash is looked for where it stood without the blanks: here it is "2024".
    EXPECT_EQ(read(u"      2024/02/05"), "2024-05-02 01:00:00");
}

TEST_F(DateReader, ReadsIsoDatesOfFeeds)
{
    EXPECT_EQ(read(u"2024-01-31"), "2024-01-31 01:00:00");
    EXPECT_EQ(read(u"31-01-2024"), "2024-01-31 01:00:00");
    EXPECT_EQ(read(u"2024-01-31T10:15:30Z"), "2024-01-31 10:15:30");
    EXPECT_EQ(read(u"2024-01-31T10:15Z"), "2024-01-31 10:15:00");
    EXPECT_EQ(read(u"2024-01-31T10:15:30.25+01:00"), "2024-01-31 09:15:30");
    EXPECT_EQ(read(u"2024-01-31T10:15:30-08:00"), "2024-01-31 18:15:30");
    EXPECT_EQ(read(u"2024-01-31T10:15:30-0800"), "2024-01-31 18:15:30");
    EXPECT_EQ(read(u"20240131T101530Z"), "2024-01-31 10:15:30");
    EXPECT_EQ(read(u"2024-01"), "2024-01-01 01:00:00");
    EXPECT_EQ(read(u"2024"), "2024-01-01 01:00:00");
}

TEST_F(DateReader, CutsCommentsAndTrims)
{
    EXPECT_EQ(read(u" Sun, 06 Nov 1994 08:49:37 +0100 (CET)\n"), "1994-11-06 07:49:37");
    EXPECT_EQ(read(u"31.01.2024; 12:00"), "2024-01-31 01:00:00");
    for (const auto* text : { u"", u" \n\u00A0", u"(no date)", u"{}" })
        EXPECT_EQ(read(text), "nil");
    EXPECT_TRUE(m_log.lines().empty());
}

TEST_F(DateReader, LogsEachUnreadableTextOnceAndWhole)
{
    for (const auto* text : { u" never ", u"?", u"-", u"a-b-c", u"12:13:14:15",
             u"Mon, 99 Nov 1994 08:49:37 GMT", u"2024-02-30T10:15:30Z", u"soon (or later)" })
        expectUnknown(text);
}

TEST_F(DateReader, ReadsHeadersAndPackagesInSilence)
{
    EXPECT_EQ(inUTC(dateFromHTTPHeaderValue(u"Sun, 06 Nov 1994 08:49:37 GMT"_s)), "1994-11-06 08:49:37");
    EXPECT_EQ(inUTC(dateFromHTTPHeaderValue(u"Sun Nov  6 08:49:37 1994"_s)), "1994-11-06 09:49:37");
    EXPECT_EQ(inUTC(dateFromHTTPHeaderValue(u"1994-11-06"_s)), "nil");
    EXPECT_EQ(inUTC(dateFromOPF(u"1994"_s)), "1994-01-01 01:00:00");
    EXPECT_EQ(inUTC(dateFromOPF(u"1994-11"_s)), "1994-11-01 01:00:00");
    EXPECT_EQ(inUTC(dateFromOPF(u"1994-11-06T08:49Z"_s)), "1994-11-06 09:49:00");
    EXPECT_EQ(inUTC(dateFromOPF(u"1994-11-06T08:49:37+0100"_s)), "1994-11-06 07:49:37");
    EXPECT_EQ(inUTC(dateFromOPF(u"6 November 1994"_s)), "nil");
    EXPECT_TRUE(m_log.lines().empty());
}

} // namespace
} // namespace caddis
