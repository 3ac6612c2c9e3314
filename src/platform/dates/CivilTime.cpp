#include "platform/dates/CivilTime.h"

#include <algorithm>
#include <chrono>

namespace caddis {

namespace {

constexpr std::int64_t SecondsPerDay = 86400;
constexpr std::int64_t FirstSecond = -62135596800; // 0001-01-01 00:00:00
constexpr std::int64_t LastSecond = 253402300799; // 9999-12-31 23:59:59

} // namespace

std::int64_t daysFromCivil(int year, int month, int day)
{
    using namespace std::chrono;
    const year_month first { std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)) };
    return sys_days(first / 1).time_since_epoch().count() + day - 1;
}

int weekdayOfDays(std::int64_t days) { return static_cast<int>(((days + 4) % 7 + 7) % 7); }

bool CivilTime::isValid() const
{
    using namespace std::chrono;
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31)
        return false;
    if (day > 28
        && !year_month_day(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
            std::chrono::day(static_cast<unsigned>(day)))
                .ok())
        return false;
    if (hour == 24)
        return minute == 0 && second == 0 && fraction == 0;
    return hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second <= 60;
}

std::int64_t CivilTime::seconds() const
{
    return daysFromCivil(year, month, day) * SecondsPerDay + hour * 3600 + minute * 60 + second;
}

CivilTime CivilTime::fromSeconds(std::int64_t seconds)
{
    using namespace std::chrono;
    const sys_seconds instant { std::chrono::seconds(std::clamp(seconds, FirstSecond, LastSecond)) };
    const auto midnight = floor<days>(instant);
    const year_month_day date { midnight };
    const hh_mm_ss time { instant - midnight };
    return { static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
        static_cast<int>(static_cast<unsigned>(date.day())), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()), 0 };
}

} // namespace caddis
