#pragma once

#include "platform/script/applescript/Interpreter.h"

/// Elements of lists and texts: item 3, words 1 thru -2, some character, every integer.
namespace caddis::applescript {

Datum getListElement(Interpreter& interpreter, const Datum& list, const Selector& selector);
void setListElement(
    Interpreter& interpreter, const Datum& list, const Selector& selector, const Datum& value);
Datum getTextElement(Interpreter& interpreter, const Datum& text, const Selector& selector);

} // namespace caddis::applescript
