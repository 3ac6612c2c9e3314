#pragma once

#include "platform/base/String.h"

#include <cstdint>
#include <ctime>
#include <optional>

/// Dates of scripts as text, in the forms of American English. Dates are long date-times: wall-clock seconds.
namespace caddis::applescript {

/// "Friday, March 1, 2024 at 1:05:09 PM".
String dateText(std::int64_t date);
/// "Friday, March 1, 2024", "3/1/24" and "1:05:09 PM".
String dateString(std::int64_t date);
String shortDateString(std::int64_t date);
String timeString(std::int64_t date);

/// Reads those forms, ISO 8601 ("2024-03-01", "2024-03-01T13:05:09"), "1 March 2024", "3/1/2024", and times
/// with and without seconds and AM or PM. Missing parts are those of `now`'s day, and midnight. Nil for text
/// that names no date.
std::optional<std::int64_t> dateFromText(const String& text, std::int64_t now);

/// The present wall-clock time.
std::int64_t currentDate();

} // namespace caddis::applescript
