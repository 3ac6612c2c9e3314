#pragma once

#include "markup/UpperAscii.h"
#include "platform/base/Range.h"
#include "platform/base/String.h"

#include <optional>

/// Parameters of header-style values: "utf-8" for "CHARSET" of `text/html; charset='utf-8'`.
///
/// A parameter runs from its `=` to the separator, trimmed, or inside quotation characters to the second of
/// them. Names are found in any case, at the beginning of a part or behind white space in it (`Digest
/// realm="x"`), and not inside quotations. Nil: there is none, or it is empty.
namespace caddis {
inline namespace XmlExtensions {

std::optional<String> headerFieldNamed(
    std::u16string_view header, UpperAscii name, char16_t quotation = u'\'', char16_t separator = u';');

/// Where headerFieldNamed finds the value.
std::optional<Range> rangeOfHeaderFieldNamed(
    std::u16string_view header, UpperAscii name, char16_t quotation = u'\'', char16_t separator = u';');

inline std::optional<String> HTTPHeaderFieldNamed(std::u16string_view header, UpperAscii name)
{
    return headerFieldNamed(header, name, u'"', u',');
}

} // namespace XmlExtensions
} // namespace caddis
