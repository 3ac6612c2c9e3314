#pragma once

#include "platform/base/String.h"
#include "platform/base/URL.h"

#include <optional>

/// The base element of a page's head, against which its relative addresses are resolved.
namespace caddis {
inline namespace HtmlExtensions {

/// The first base that is a remote web URL; `//host/` is completed by "http:". A base of "/" says that there
/// is none, one that begins with # is passed over. Any other one is logged as "Invalid base: '%@'" and passed
/// over.
std::optional<URL> htmlBaseURL(const String& html);

/// The text with "<BASE href=\"%@\"/>\n" in place of the first base element of its head, or, without one,
/// right behind the head's start tag: failing that behind the html element's start tag or what stands before
/// it (`<!DOCTYPE>`, `<?xml?>`), and at the very start of a text that has none of these.
String stringBySettingBaseURL(const String& html, const URL& base);

/// The same, but a text that has a base (htmlBaseURL) keeps it and is returned itself.
String stringByAddingBaseURL(const String& html, const URL& base);

} // namespace HtmlExtensions
} // namespace caddis
