#pragma once

#include "platform/base/FunctionRef.h"

#include <string>
#include <string_view>

namespace caddis::bundles {

/// One line of a vCard or an iCalendar object: `item1.EMAIL;TYPE=home:ada@example.org`.
struct ContentLine {
    std::string_view name; ///< without its group: "EMAIL"
    std::string_view parameters; ///< as they are written: "TYPE=home"
    std::string_view value; ///< as it is written, references in it not resolved
};

/// Visits the lines, folded ones joined (RFC 5545, 3.1; RFC 6350, 3.2), until `visit` answers false. What is
/// no content line is left out. Time is linear in the text.
void readContentLines(std::string_view text, FunctionRef<bool(const ContentLine&)> visit);

/// A value with its escapes resolved: `\n`, `\,`, `\;`, `\\`.
std::string unescaped(std::string_view value);

/// Takes a value's next part, up to a separator that is not escaped, off `rest`.
std::string takePart(std::string_view& rest, char separator);

} // namespace caddis::bundles
