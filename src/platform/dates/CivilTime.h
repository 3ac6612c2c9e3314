#pragma once

#include <cstdint>

namespace caddis {

/// A reading of calendar and clock, without a zone: proleptic Gregorian, years 1 to 9999.
///
/// Field values come from texts as they stand; only a valid reading may be turned into seconds.
struct CivilTime {
    int year = 1;
    int month = 1; ///< 1 to 12
    int day = 1; ///< 1 to the month's length
    int hour = 0; ///< 0 to 23, or 24 for the midnight that ends the day
    int minute = 0;
    int second = 0; ///< 0 to 60: a leap second is the second behind 59
    double fraction = 0; ///< of a second, 0 ≤ fraction < 1

    bool isValid() const;

    /// Seconds from 1970-01-01 00:00:00 of the same clock, without the fraction. The reading must be valid.
    std::int64_t seconds() const;
    /// Seconds outside the years 1 to 9999 give the first or the last reading of these.
    static CivilTime fromSeconds(std::int64_t seconds);

    friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

/// Days from 1970-01-01 to a day of the calendar; the day may lie outside its month and carries over.
std::int64_t daysFromCivil(int year, int month, int day);

/// 0 is Sunday, for a count of days from 1970-01-01.
int weekdayOfDays(std::int64_t days);

} // namespace caddis
