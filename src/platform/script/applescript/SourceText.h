#pragma once

#include "platform/script/applescript/Datum.h"

namespace caddis::applescript {

/// A value as a script would write it: {1, "two", |a b|:3.0}. Nested beyond 100 levels it ends in "…".
String sourceText(const Datum& value);
/// The same with every digit that a real needs to be read back as itself.
String exactSourceText(const Datum& value);
/// A quoted string literal.
String quotedText(std::u16string_view text);
/// "item 3", "name", "every word": what a selector names, without its container.
struct Selector;
String selectorText(const Selector& selector);

} // namespace caddis::applescript
