#pragma once

#include "platform/base/Date.h"
#include "platform/base/String.h"

#include <optional>
#include <string_view>

namespace caddis::pdf {

/// A text string (ISO 32000-2, 7.9.2.2): UTF-16 in either order or UTF-8 when it begins with a byte-order
/// mark, else PDFDocEncoding. Language marks (U+001B … U+001B) are taken out.
String textString(std::string_view bytes);

/// Text that is to stand on one line: well formed, its line ends and tabs blanks, other control characters
/// gone.
String singleLine(const String& text);

/// A date string (7.9.4): "D:20240131120000+01'00'"; parts may be missing from the end on, the zone then is
/// UTC. Nil for anything else and for days that there are not.
std::optional<Date> dateString(std::string_view bytes);

} // namespace caddis::pdf
