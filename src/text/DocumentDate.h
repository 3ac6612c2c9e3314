#pragma once

#include "platform/base/Date.h"
#include "platform/base/String.h"

#include <optional>

namespace caddis {
inline namespace DateExtensions {

/// The first date among a document's words: day, month and year, or month, day and year, one right behind the
/// other; days from 1 to 31, years from 1950 to 2050, months as numbers or by their English or German names
/// from three letters on, days also as "1st" or "22ND". Of two numbers the first is the day unless only the
/// second can be one. An O misread as zero does no harm ("0ctober").
///
/// With `validatingSeparation`, punctuation inside a word separates ("12.3.2004" is three words) and a day or
/// month may have one digit; without it such numbers have two.
///
/// Midnight in the default zone. Nil: no such run of words, or none that the calendar knows.
std::optional<Date> documentDateByValidatingSeparation(const String& text, bool validatingSeparation);

} // namespace DateExtensions
} // namespace caddis
