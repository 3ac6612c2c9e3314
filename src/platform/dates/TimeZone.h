#pragma once

#include "platform/base/Date.h"
#include "platform/dates/CivilTime.h"

#include <memory>
#include <optional>
#include <string_view>

namespace caddis {

class DateCursor;
class ZoneRules;

/// A fixed offset from UTC, or the rules of a place.
class TimeZone {
public:
    /// UTC.
    TimeZone() = default;
    /// Seconds east of UTC.
    explicit TimeZone(int offset)
        : m_offset(offset)
    {
    }
    explicit TimeZone(std::shared_ptr<const ZoneRules> rules)
        : m_rules(std::move(rules))
    {
    }

    /// A zone by any of its written forms: an abbreviation ("EST", "CEST", "Z"; one that states daylight or
    /// standard time is that fixed offset), an offset ("+0100", "GMT+01:00"), or a name of the system's time
    /// zone database ("Europe/Berlin"). Nil: none of these.
    static std::optional<TimeZone> named(std::u16string_view name);
    /// A zone of the system's time zone database. Nil: no such name, or no database.
    static std::optional<TimeZone> inDatabase(std::u16string_view name);

    /// What texts without a zone are read in: TZ, else /etc/localtime, else UTC, found at the first use.
    static const TimeZone& defaultZone();
    /// Replaces the default zone; not while other threads read dates.
    static void setDefaultZone(TimeZone zone);

    /// Seconds east of UTC at an instant, in seconds since 1970.
    int offsetAt(std::int64_t unixSeconds) const;

    /// The instant at which a clock of this zone shows the reading, which must be valid. A reading that
    /// occurs twice is the earlier instant; one that a clock skips counts from before the change.
    Date date(const CivilTime& civil) const;
    /// What a clock of this zone shows; the fraction of a second is dropped.
    CivilTime civilTime(Date date) const;

private:
    int m_offset = 0;
    std::shared_ptr<const ZoneRules> m_rules;
};

/// Reads "+hh", "+hhmm" or "+hh:mm" (also "-", and U+2212); seconds east of UTC. The cursor stays where it
/// is when there is none, or one beyond 18 hours.
std::optional<int> readOffset(DateCursor& cursor);

/// The fixed offset of a zone abbreviation, in seconds; case does not matter. Nil: not a known one.
std::optional<int> offsetOfAbbreviation(std::u16string_view name);

} // namespace caddis
