#pragma once

#include "platform/base/Date.h"

#include <optional>
#include <string_view>

namespace caddis {

/// Reads a date by a calendar format; the whole text must fit it.
///
///     %Y  four digits          %y  two digits: 70 to 99 are 1970 to 1999, 00 to 69 are 2000 to 2069
///     %m %d %H %M %S           one or two digits
///     %b %a                    three letters of an English month or weekday, case-insensitive
///     %B %A                    an English month or weekday in full
///     %Z                       a zone as TimeZone::named reads it        %z  an offset such as +0100
///     %%                       a percent sign
///
/// A blank in the format stands for any run of white space, also none; white space before a number is
/// skipped; every other unit must stand in the text as it is. A weekday must be one, but need not agree with
/// the date. Without a zone the time is read in the default zone; a missing year is the present one, a
/// missing month or day 1, a missing time 0. Nil: the text does not fit, or there is no such day or time.
/// Never throws, for no text and no format.
std::optional<Date> dateWithString(std::u16string_view text, std::u16string_view calendarFormat);

} // namespace caddis
