#pragma once

#include "platform/script/applescript/Commands.h"

/// Objects of applications outside: what is named is sent as a specifier, and the application answers.
namespace caddis::applescript {

/// Whether the value is such an application, or names an object of one.
bool isRemote(const Datum& value);

/// The object that a selector names in an application or in one of its objects. Nothing is sent.
Datum specifierOf(const Datum& container, const Selector& selector);

/// The value of an object or property; not set when the application answers nothing.
Datum getRemote(Interpreter& interpreter, const Datum& specifier);
void setRemote(Interpreter& interpreter, const Datum& specifier, const Datum& value);
/// How many objects a specifier names, or how many of a class it holds.
Datum countRemote(Interpreter& interpreter, const Datum& specifier, Symbol elementClass);
Datum existsRemote(Interpreter& interpreter, const Datum& specifier);

/// A command of a dictionary: CommandSpec::perform.
Datum sendCommand(CommandCall& call);

} // namespace caddis::applescript
