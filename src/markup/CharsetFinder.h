#pragma once

#include "platform/base/String.h"
#include "platform/unicode/StringEncoding.h"

#include <optional>

/// The character set that a header or a document declares for itself.
///
/// In a document: the first of `<?xml … encoding="…"?>`, `<meta … content="…; charset=…">` and
/// `<meta charset="…">`. Declarations behind the start of the body do not count. Nil: nothing is declared.
namespace caddis {
inline namespace XmlExtensions {

/// The "CHARSET" of a header value such as `text/html; charset=utf-8`.
std::optional<String> headerCharset(std::u16string_view header);
/// Its encoding; InvalidId when there is none.
NSStringEncoding headerEncoding(std::u16string_view header);

std::optional<String> markupCharset(const String& markup);
/// Where the declaration's value stands, as it is written, for replacing it.
std::optional<Range> markupCharsetRange(const String& markup);
/// InvalidId when nothing, or nothing known, is declared.
NSStringEncoding markupEncoding(const String& markup);

/// The "URL" of a refresh header value, `5; url=http://…`, without its quotation marks.
std::optional<String> headerRefresh(std::u16string_view header);
/// Its seconds; 0 when it says none.
double refreshInterval(std::u16string_view header);

} // namespace XmlExtensions
} // namespace caddis
