#include "platform/script/LongDateTime.h"

#include "platform/script/EventDescriptor.h"
#include "support/Text.h"

#include <stdlib.h>

namespace caddis {
namespace {

class TimeZone {
public:
    explicit TimeZone(const char* name)
    {
        setenv("TZ", name, 1);
        tzset();
    }
    ~TimeZone()
    {
        unsetenv("TZ");
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
};

// The reference date, 2001-01-01 00:00:00 UTC, is another wall-clock time in each zone.
TEST(LongDateTime, CountsLocalTimeSince1904)
{
    const std::pair<const char*, std::int64_t> zones[]
        = { { "UTC0", 0 }, { "CET-1CEST,M3.5.0,M10.5.0/3", 3600 }, { "EST5EDT,M3.2.0,M11.1.0", -18000 } };
    for (const auto& [name, offset] : zones) {
        const TimeZone zone(name);
        EXPECT_EQ(longDateTimeFromDate(Date {}), 3'061'152'000 + offset) << name;
        for (const double seconds : { -3e9, -86400.0 * 400, 0.0, 1.5e8, 6.5e8, 4e9 })
            EXPECT_EQ(dateFromLongDateTime(longDateTimeFromDate({ seconds })), Date { seconds }) << name;
        EXPECT_EQ(longDateTimeFromDate({ -0.25 }), 3'061'151'999 + offset) << name;
    }
}

TEST(LongDateTime, HoursOfDaylightSavingGiveSomeDateAndFarOnesNone)
{
    const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    std::tm gap {};
    gap.tm_year = 124;
    gap.tm_mon = 2;
    gap.tm_mday = 31;
    gap.tm_hour = 2;
    EXPECT_TRUE(dateFromLongDateTime(longDateTimeFromFields(gap)));
    EXPECT_FALSE(dateFromLongDateTime(INT64_MAX));
    EXPECT_FALSE(dateFromLongDateTime(INT64_MIN));
    EXPECT_EQ(longDateTimeFromDate({ 1e300 }), std::int64_t { 1 } << 53);
    const auto beforeUnixEpoch = dateFromLongDateTime(LongDateTimeEpochOffset - 1 + 3600);
    ASSERT_TRUE(beforeUnixEpoch);
    EXPECT_EQ(beforeUnixEpoch->unixSeconds(), -1);
}

TEST(LongDateTime, DescriptorsNeedTheirEightBytes)
{
    const EventDescriptor date = EventDescriptor::withDate(Date { 1000 });
    EXPECT_EQ(date.descriptorType(), "ldt "_code);
    EXPECT_EQ(date.dateValue(), Date { 1000 });
    EXPECT_EQ(EventDescriptor("ldt "_code, Data::copyOf("1234")).dateValue(), std::nullopt);
    EXPECT_EQ(EventDescriptor("comp"_code, date.data()).dateValue(), std::nullopt);
}

} // namespace
} // namespace caddis
