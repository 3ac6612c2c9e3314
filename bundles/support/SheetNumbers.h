#pragma once

#include <string>
#include <string_view>

/// Numbers of spreadsheets as text; dates are numbers of days in a cell whose format says so.
namespace caddis::bundles {

/// Whether a built-in number format (ECMA-376, part 1, 18.8.30) shows a date or a time.
bool isDateFormat(unsigned identifier);
/// The same for the code of another one: "dd/mm/yyyy". Elapsed times, "[h]:mm", are no dates.
bool isDateFormat(std::string_view code);

enum class SheetEpoch { From1900, From1904 };

/// "2026-03-01", "2026-03-01 09:30:00" or, for less than a day, "09:30:00". A number out of the calendar of
/// spreadsheets is written as a number.
std::string dateText(double days, SheetEpoch epoch);
/// With at most 15 digits, all that such a number has.
std::string numberText(double number);

} // namespace caddis::bundles
