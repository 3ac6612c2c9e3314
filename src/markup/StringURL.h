#pragma once

#include "platform/base/String.h"

#include <optional>

/// URLs as pages write them.
namespace caddis {
inline namespace XmlExtensions {

/// The text of a link as a URL can hold it: references converted, white space at the ends and line ends and
/// tabs inside removed, and what a URL may not show (blanks, control characters, quotation marks, angle
/// brackets, everything beyond ASCII) percent-escaped as UTF-8. Whatever stands behind a percent sign stays.
///
/// Nil: nothing is left. Same: returns `text` itself where nothing had to change.
std::optional<String> normalizedStringURL(const String& text);

/// Whether the text is an http or https URL with a host.
bool isRemoteWebKitStringURL(const String& text);

} // namespace XmlExtensions
} // namespace caddis
