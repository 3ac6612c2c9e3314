#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace caddis {

/// A zone's yearly rule as POSIX writes it in the variable TZ: "CET-1CEST,M3.5.0,M10.5.0/3", "<+03>-3".
struct PosixZoneRule {
    /// One change of the clock in a year.
    struct Change {
        enum class Kind : unsigned char {
            JulianDay, ///< day 1 to 365; 29 February is never counted
            DayOfYear, ///< day 0 to 365; 29 February counts
            WeekdayOfMonth, ///< month, week 1 to 5 (5: the last), weekday 0 to 6 from Sunday
        };
        Kind kind = Kind::WeekdayOfMonth;
        int month = 0;
        int week = 0;
        int day = 0;
        int time = 7200; ///< seconds from local midnight, -167 to 167 hours

        /// Local seconds since 1970 of the change in a year.
        std::int64_t secondsInYear(int year) const;
    };

    int standardOffset = 0; ///< seconds east of UTC
    int daylightOffset = 0;
    bool hasDaylight = false;
    Change start; ///< of daylight time, by the standard clock
    Change end; ///< of daylight time, by the daylight clock

    /// Nil unless the whole text is such a rule. Daylight time without its changes has the changes of the
    /// United States, as POSIX leaves open and every system does.
    static std::optional<PosixZoneRule> parse(std::u16string_view text);

    int offsetAt(std::int64_t unixSeconds) const;
};

} // namespace caddis
