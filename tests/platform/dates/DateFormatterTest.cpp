#include "platform/dates/DateFormatter.h"

#include "support/DateText.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::string read(std::u16string_view text, std::u16string_view format)
{
    return inUTC(DateFormatter(format).dateFromString(text));
}

TEST(DateFormatter, ReadsInTheDefaultZoneWhatHasNoZone)
{
    const DefaultZone zone(TimeZone(7200));
    EXPECT_EQ(read(u"2010", u"yyyy"), "2009-12-31 22:00:00");
    EXPECT_EQ(read(u"2010-03-04T10:20Z", u"yyyy-MM-dd'T'HH:mm'Z'"), "2010-03-04 08:20:00")
        << "quoted: mere text";
    EXPECT_EQ(read(u"2010-3-4 9:8:7", u"yyyy-MM-dd HH:mm:ss"), "2010-03-04 07:08:07");
}

TEST(DateFormatter, ReadsZonesInTheirForms)
{
    constexpr std::u16string_view Format = u"yyyy-MM-dd'T'HH:mm:ssZ";
    EXPECT_EQ(read(u"2010-03-04T10:20:30+0100", Format), "2010-03-04 09:20:30");
    EXPECT_EQ(read(u"2010-03-04T10:20:30-01:00", Format), "2010-03-04 11:20:30");
    EXPECT_EQ(read(u"2010-03-04T10:20:30GMT+01:00", Format), "2010-03-04 09:20:30");
    EXPECT_EQ(read(u"2010-03-04T10:20:30Z", Format), "2010-03-04 10:20:30");
    EXPECT_EQ(read(u"2010-03-04T10:20:30", Format), "nil");
}

TEST(DateFormatter, IsStrict)
{
    EXPECT_EQ(read(u"2010-03", u"yyyy"), "nil");
    EXPECT_EQ(read(u"20100304", u"yyyy"), "nil");
    EXPECT_EQ(read(u"10-03-04", u"yyyy-MM-dd"), "nil");
    EXPECT_EQ(read(u"2010-02-30", u"yyyy-MM-dd"), "nil");
    EXPECT_EQ(read(u" 2010", u"yyyy"), "nil");
    EXPECT_EQ(read(u"2010", u"yyyyQ"), "nil");
    EXPECT_EQ(read(u"10", u"dd"), "nil");
}

TEST(DateFormatter, QuotesWithinPatterns)
{
    const DefaultZone zone { TimeZone() };
    EXPECT_EQ(read(u"it's 2010", u"'it''s' yyyy"), "2010-01-01 00:00:00");
    EXPECT_EQ(read(u"' 2010", u"'' yyyy"), "2010-01-01 00:00:00");
    EXPECT_EQ(read(u"2010 open", u"yyyy 'open"), "nil");
}

TEST(DateFormatter, WritesInTheDefaultZone)
{
    const DefaultZone zone(TimeZone(7200));
    const Date date = Date::fromUnixSeconds(1678118817); // 2023-03-06 16:06:57 UTC
    EXPECT_EQ(DateFormatter::dateTimeFormatter().stringFromDate(date), u"6 March 2023, 18:06");
    EXPECT_EQ(DateFormatter(u"yyyy-MM-dd'T'HH:m:ssZ").stringFromDate(date), u"2023-03-06T18:6:57");
    EXPECT_EQ(DateFormatter(u"''d 'o''clock' H 'open").stringFromDate(date), u"'6 o'clock 18 open");
    EXPECT_EQ(DateFormatter(u"").stringFromDate(date), u"");
}

} // namespace
} // namespace caddis
