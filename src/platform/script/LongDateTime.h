#pragma once

#include "platform/base/Date.h"

#include <cstdint>
#include <ctime>
#include <optional>

/// Dates of events and scripts: seconds since 1904-01-01 00:00:00 *local* time, by the offset that is valid
/// at the date itself. An hour that daylight saving repeats or leaves out does not survive the round trip.
namespace caddis {

/// 1904 to 1970.
inline constexpr std::int64_t LongDateTimeEpochOffset = 2'082'844'800;

/// Fractions are dropped downwards.
std::int64_t longDateTimeFromDate(const Date& date);

/// Nil where the local calendar cannot name the instant.
std::optional<Date> dateFromLongDateTime(std::int64_t seconds);

/// The calendar fields of a long date-time, as if it were in UTC: no zone takes part. Nil beyond the years
/// that `std::tm` counts.
std::optional<std::tm> calendarFields(std::int64_t longDateTime);

/// The other way round; fields out of their range carry over (day 32 is the next month's first).
std::int64_t longDateTimeFromFields(std::tm fields);

} // namespace caddis
