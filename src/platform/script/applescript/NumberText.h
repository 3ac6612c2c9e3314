#pragma once

#include "platform/script/applescript/Datum.h"

namespace caddis::applescript {

/// Integers in full; reals with up to 12 significant digits and always a point, in exponent form from 1.0E+4
/// on and below 1.0E-4.
String numberText(const Datum& number);

/// The same with as many digits as it takes to read the number back as it is.
String exactNumberText(const Datum& number);

/// The number that a text stands for, blanks around it allowed: "12", "-1.5", "1.0E+3". Nil for anything
/// else.
std::optional<Datum> numberFromText(std::u16string_view text);

/// A real as an integer where it is a whole one of the language's size.
Datum wholeIfPossible(double value);

} // namespace caddis::applescript
