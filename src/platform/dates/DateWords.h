#pragma once

#include <string_view>

namespace caddis {

/// What one word of a date phrase says.
struct DateWord {
    enum class Kind {
        Unknown,
        Filler, ///< "at", "of", the "th" of "5th": says nothing
        Month, ///< 1 to 12
        Weekday, ///< 0 to 6 from Sunday
        Day, ///< days from today: "tomorrow" is 1
        Now, ///< this instant
        Direction, ///< -1 for "ago" and "last", 1 for "next"
        Days, ///< a unit of that many days
        Months, ///< a unit of that many months
        Hour, ///< the hour that "noon" or "dinner" stands for
        Meridiem, ///< 0 before noon, 12 after it
        Zone, ///< seconds east of UTC
    };
    Kind kind = Kind::Unknown;
    int value = 0;
};

/// The meaning of a run of letters; case does not matter.
DateWord meaningOfDateWord(std::u16string_view word);

} // namespace caddis
