#pragma once

#include "platform/base/Date.h"

#include <optional>
#include <string_view>

namespace caddis {

/// Reads a date as people and programs write them: ISO 8601 (readIsoDate), "Sun Jul 15 01:16:00 +0000 2012",
/// "3pm December 31, 2001", "12/31/01", "last Tuesday at dinner", "3 weeks ago".
///
/// Words may stand in any order. Of plain numbers, one of four digits or above 31 is the year wherever it
/// stands (two digits pivot at 70); beside a month's name the first other one is the day; else the order is
/// day, month, year, or year, month, day where the year comes first, and a month above 12 changes places with
/// the day. A trailing " 1 1" says day 1 and month 1, which are the defaults anyway.
///
/// A missing year is the present one; a missing time is midnight, and noon for days named by their distance
/// from today or by their weekday; a missing zone is the default zone, and Korea's for Korean date marks. A
/// weekday beside a date need not agree with it; alone it is the day of the present week, which begins on
/// Monday.
///
/// Nil rather than a guess: no such day or time, more numbers than fields, nothing that says a date, or
/// unknown words beside less than a day, a month and a year. Never throws; takes time in proportion to the
/// text.
///
/// `now` stands for the present instant.
std::optional<Date> dateWithNaturalLanguageString(
    std::u16string_view text, std::optional<Date> now = std::nullopt);

} // namespace caddis
