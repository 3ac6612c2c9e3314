#pragma once

#include "platform/script/applescript/Interpreter.h"

/// Reading and changing what references name: properties, elements, variables.
namespace caddis::applescript {

/// The value that a selector names in a container. Fails with -1728 or -1719 when there is none.
Datum get(Interpreter& interpreter, const Datum& container, const Selector& selector);
/// Fails with -10006 where the container does not let itself be changed.
void set(Interpreter& interpreter, const Datum& container, const Selector& selector, const Datum& value);

Datum getProperty(Interpreter& interpreter, const Datum& container, Symbol name);
void setProperty(Interpreter& interpreter, const Datum& container, Symbol name, const Datum& value);

/// The class of a value, as `class of` gives it.
Symbol classOf(const Datum& value);
/// How many elements a class has in a container; all items for Symbol::Item.
std::int64_t countElements(Interpreter& interpreter, const Datum& container, Symbol elementClass);

/// An index from 1 or, from the end, from -1, as an offset from 0; nil when it is outside.
std::optional<std::size_t> offsetOfIndex(std::int64_t index, std::size_t count);

} // namespace caddis::applescript
