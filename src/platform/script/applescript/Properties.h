#pragma once

#include "platform/script/applescript/Interpreter.h"

/// The properties of the language's own values.
namespace caddis::applescript {

/// Nil when the value has no such property.
std::optional<Datum> propertyOfValue(Interpreter& interpreter, const Datum& holder, Symbol name);
/// False when there is no such property or it cannot be changed.
bool setPropertyOfValue(Interpreter& interpreter, const Datum& holder, Symbol name, const Datum& value);

/// `pi`, `tab`, `days`…: the properties of the language itself. Nil for other names.
std::optional<Datum> languageConstant(Symbol name);

/// A text when there is one delimiter, else a list.
Datum textItemDelimiters();
void setTextItemDelimiters(Interpreter& interpreter, const Datum& value);

/// `text` as one word for a shell.
String quotedForm(const String& text);

} // namespace caddis::applescript
