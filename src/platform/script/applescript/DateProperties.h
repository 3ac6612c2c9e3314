#pragma once

#include "platform/script/applescript/Interpreter.h"

namespace caddis::applescript {

/// year, month, weekday, time, date string…; nil for other names.
std::optional<Datum> dateProperty(const DateObject& date, Symbol name);
/// Fields beyond their range carry over: day 32 is the first of the next month. False for other names.
bool setDateProperty(Interpreter& interpreter, DateObject& date, Symbol name, const Datum& value);

} // namespace caddis::applescript
