#include "platform/dates/TimeZone.h"

#include "platform/dates/DateCursor.h"
#include "support/DateText.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr int Hour = 3600;

std::optional<int> winterOffset(std::u16string_view name)
{
    const auto zone = TimeZone::named(name);
    return zone ? std::optional(zone->offsetAt(1704067200)) : std::nullopt; // 1 January 2024
}

TEST(TimeZone, KnowsAbbreviationsAsFixedOffsets)
{
    EXPECT_EQ(winterOffset(u"GMT"), 0);
    EXPECT_EQ(winterOffset(u"z"), 0);
    EXPECT_EQ(winterOffset(u"edt"), -4 * Hour);
    EXPECT_EQ(winterOffset(u"CEST"), 2 * Hour);
    EXPECT_EQ(winterOffset(u"IST"), 5 * Hour + 1800);
    EXPECT_EQ(winterOffset(u"NST"), -3 * Hour - 1800);
}

TEST(TimeZone, ReadsOffsets)
{
    EXPECT_EQ(winterOffset(u"+0100"), Hour);
    EXPECT_EQ(winterOffset(u"-05:30"), -5 * Hour - 1800);
    EXPECT_EQ(winterOffset(u"GMT+01:00"), Hour);
    EXPECT_EQ(winterOffset(u"UTC-5"), -5 * Hour);
    for (const auto* text : { u"+", u"+1900", u"+01:60", u"+01000", u"EST+0100x", u"EST+0100", u"" })
        EXPECT_EQ(winterOffset(text), std::nullopt) << String(text).utf8();
}

TEST(TimeZone, TakesOnlyNamesOfZonesFromTheDatabase)
{
    EXPECT_EQ(winterOffset(u"Europe/Berlin"), Hour);
    EXPECT_EQ(winterOffset(u"Asia/Kolkata"), 5 * Hour + 1800);
    for (const auto* text :
        { u"Europe", u"Europe/", u"Europe/Nowhere", u"../zoneinfo/Europe/Berlin", u"/etc/localtime",
            u"right/Europe/Berlin", u"Europe/../Europe/Berlin", u"tzdata.zi", u"Europe/Berl\u00EDn" })
        EXPECT_FALSE(TimeZone::inDatabase(text)) << String(text).utf8();
}

TEST(TimeZone, ReadsAClockThatJumps)
{
    const TimeZone berlin = *TimeZone::inDatabase(u"Europe/Berlin");
    const auto at = [&](CivilTime civil) { return inUTC(berlin.date(civil)); };
    EXPECT_EQ(at({ 2024, 1, 15, 12, 0, 0 }), "2024-01-15 11:00:00");
    EXPECT_EQ(at({ 2024, 7, 15, 12, 0, 0 }), "2024-07-15 10:00:00");
    EXPECT_EQ(at({ 2024, 3, 31, 2, 30, 0 }), "2024-03-31 01:30:00")
        << "skipped: counts from before the change";
    EXPECT_EQ(at({ 2024, 10, 27, 2, 30, 0 }), "2024-10-27 00:30:00") << "twice: the earlier";
    EXPECT_EQ(at({ 2024, 10, 27, 3, 30, 0 }), "2024-10-27 02:30:00");
    EXPECT_EQ(at({ 2087, 7, 15, 12, 0, 0 }), "2087-07-15 10:00:00") << "by the rule for the future";
}

TEST(TimeZone, ShowsWhatAClockShows)
{
    const CivilTime summer { 2024, 7, 15, 12, 30, 59 };
    const TimeZone berlin = *TimeZone::inDatabase(u"Europe/Berlin");
    EXPECT_EQ(berlin.civilTime(berlin.date(summer)), summer);
    EXPECT_EQ(TimeZone().civilTime(Date { -0.5 }).second, 59);
    EXPECT_EQ(TimeZone().civilTime(Date { 1e300 }).year, 9999);
    EXPECT_EQ(TimeZone().civilTime(Date { -1e300 }).year, 1);
}

} // namespace
} // namespace caddis
