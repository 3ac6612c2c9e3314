#pragma once

#include "platform/script/applescript/Interpreter.h"

namespace caddis::applescript {

/// `value as wanted`; fails with -1700.
Datum coerce(Interpreter& interpreter, const Datum& value, Symbol wanted);

/// The text a value is coerced to, nil where there is none.
std::optional<String> textOf(Interpreter& interpreter, const Datum& value);
/// The same, failing with -1700.
String requireText(Interpreter& interpreter, const Datum& value);

/// The number a value is or is coerced to, nil where there is none.
std::optional<Datum> numberOf(Interpreter& interpreter, const Datum& value);
Datum requireNumber(Interpreter& interpreter, const Datum& value);
/// Fails with -1700 for what is no number, and with -2702 outside 32 bits.
std::int64_t requireInteger(Interpreter& interpreter, const Datum& value);
bool requireBoolean(Interpreter& interpreter, const Datum& value);
/// The absolute path with slashes of a file, alias, or text with colons (or with slashes, where it begins
/// so).
String requirePath(Interpreter& interpreter, const Datum& value);

/// A measure in another unit of its kind; nil when the units do not go together.
std::optional<Datum> convertUnit(const UnitObject& value, Symbol unit);
bool isUnit(Symbol name);

} // namespace caddis::applescript
