#pragma once

#include "platform/base/String.h"

namespace caddis {

/// An instant: seconds since 2001-01-01 00:00:00 UTC, fractions included, leap seconds not counted.
struct Date {
    /// The reference date in seconds since 1970-01-01 00:00:00 UTC.
    static constexpr double ReferenceUnixSeconds = 978307200;

    double secondsSinceReferenceDate = 0;

    static constexpr Date fromUnixSeconds(double seconds) { return { seconds - ReferenceUnixSeconds }; }
    constexpr double unixSeconds() const { return secondsSinceReferenceDate + ReferenceUnixSeconds; }
    static Date now();

    /// "2001-01-01 00:00:00 +0000", in UTC, whole seconds; the plain number of seconds where no calendar
    /// year between 0 and 9999 holds the instant.
    String description() const;

    friend constexpr bool operator==(const Date&, const Date&) = default;
};

} // namespace caddis
