#pragma once

#include "platform/base/Date.h"
#include "platform/base/String.h"

#include <optional>

/// Dates from the free text of feeds, HTTP headers and book metadata. Nothing here throws, whatever the text.
namespace caddis {
inline namespace DateExtensions {

/// The general reader: a few cheap measures of the text choose one calendar format, and the natural-language
/// reader has the last word. Day goes before month where numbers alone leave it open, a comment in
/// parentheses is ignored, and a text without a zone is read in the default zone.
///
/// Nil:   empty or white text, silently; every other unreadable text logs one line "Unknown date: TEXT".
std::optional<Date> date(const String& text);

/// A date of an HTTP header: RFC 1123, RFC 850 or asctime form. Nil: another text; nothing is logged.
std::optional<Date> dateFromHTTPHeaderValue(const String& value);

/// A date of a book's package document: a year, a month or a day, or a day with a time to the minute or
/// second and a zone. A time that ends in "Z" is one of the default zone. Nil: another text; nothing is
/// logged.
std::optional<Date> dateFromOPF(const String& text);

} // namespace DateExtensions
} // namespace caddis
