#include "platform/base/Date.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace caddis {

Date Date::now()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

String Date::description() const
{
    constexpr double YearZero = -62167219200;
    constexpr double YearTenThousand = 253402300800;
    char text[64];
    const double seconds = std::floor(unixSeconds());
    if (!(seconds >= YearZero && seconds < YearTenThousand)) {
        std::snprintf(text, sizeof text, "%g", secondsSinceReferenceDate);
        return String::fromLatin1(text);
    }
    using namespace std::chrono;
    const sys_seconds instant { std::chrono::seconds(static_cast<std::int64_t>(seconds)) };
    const auto day = floor<days>(instant);
    const year_month_day date { day };
    const hh_mm_ss time { instant - day };
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d +0000", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()));
    return String::fromLatin1(text);
}

} // namespace caddis
