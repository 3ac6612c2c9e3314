#pragma once

#include "platform/base/Date.h"

#include <optional>
#include <string_view>

namespace caddis {

/// Reads ISO 8601 in all the forms that feeds and metadata carry.
///
///     2003-12-31   2003/12/31   2003.12.31   20031231   2003-12   2003   031231
///     2003-335   2003335   03335 (days of a year)   2003-W52-3   2003W523 (weeks)   2003-012-31
///
/// with a time behind "T" or blanks: 10:14, 9:15, 10:14:55, 10:14:55.123, 10:14:55,123, 1014, 101455, 10; and
/// a zone: Z, +01, +0100, +01:00, a name. Without a time it is midnight, without a zone the default zone. Nil
/// unless the whole text is one of these and such a day and time exist.
std::optional<Date> readIsoDate(std::u16string_view text);

/// The year that two digits stand for: 70 to 99 are 1970 to 1999, 00 to 69 are 2000 to 2069.
constexpr int yearOfTwoDigits(int value) { return value < 70 ? 2000 + value : 1900 + value; }

} // namespace caddis
