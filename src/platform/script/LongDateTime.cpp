#include "platform/script/LongDateTime.h"

#include <cmath>

namespace caddis {

namespace {

// Some 290 million years each way: beyond it std::tm's years do not reach far enough.
constexpr std::int64_t FarthestSeconds = std::int64_t { 1 } << 53;

} // namespace

std::int64_t longDateTimeFromDate(const Date& date)
{
    const double unixSeconds = std::floor(date.unixSeconds());
    if (!(std::abs(unixSeconds) < static_cast<double>(FarthestSeconds)))
        return unixSeconds > 0 ? FarthestSeconds : -FarthestSeconds;
    const auto instant = static_cast<std::time_t>(unixSeconds);
    std::tm local {};
    tzset();
    if (!localtime_r(&instant, &local))
        return instant + LongDateTimeEpochOffset;
    return timegm(&local) + LongDateTimeEpochOffset;
}

std::optional<Date> dateFromLongDateTime(std::int64_t seconds)
{
    auto fields = calendarFields(seconds);
    if (!fields)
        return std::nullopt;
    fields->tm_isdst = -1;
    fields->tm_wday = -1; // mktime sets it when it succeeds; -1 alone is also the second before 1970.
    tzset();
    const std::time_t instant = mktime(&*fields);
    if (instant == -1 && fields->tm_wday == -1)
        return std::nullopt;
    return Date::fromUnixSeconds(static_cast<double>(instant));
}

std::optional<std::tm> calendarFields(std::int64_t longDateTime)
{
    if (longDateTime > FarthestSeconds || longDateTime < -FarthestSeconds)
        return std::nullopt;
    const auto instant = static_cast<std::time_t>(longDateTime - LongDateTimeEpochOffset);
    std::tm fields {};
    if (!gmtime_r(&instant, &fields))
        return std::nullopt;
    return fields;
}

std::int64_t longDateTimeFromFields(std::tm fields) { return timegm(&fields) + LongDateTimeEpochOffset; }

} // namespace caddis
