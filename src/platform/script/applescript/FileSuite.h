#pragma once

#include "platform/script/applescript/Interpreter.h"

/// Files and folders as "Finder" and "System Events" know them.
namespace caddis::applescript {

/// The applications whose file suite is built in.
bool isFileApplication(const String& name);
/// Fails with -1728 for an application that is not known here.
void requireApplication(const Datum& application);

Datum getFileElement(Interpreter& interpreter, const Datum& container, const Selector& selector);
/// Nil when the item or application has no such property.
std::optional<Datum> fileProperty(Interpreter& interpreter, const Datum& item, Symbol name);
/// False when there is no such property or it cannot be changed.
bool setFileProperty(Interpreter& interpreter, const Datum& item, Symbol name, const Datum& value);

} // namespace caddis::applescript
