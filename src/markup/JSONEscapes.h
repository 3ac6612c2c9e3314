#pragma once

#include "platform/base/String.h"

/// The escapes of JSON and JavaScript string literals, both ways, on the text between a literal's quotes.
///
///     caf\u00e9 \"a\/b\"\n   are the characters   café "a/b" and a line feed
///
/// All functions return `text` itself where nothing had to change. A text without anything to escape is only
/// looked through, at the speed of memory; time is linear in the text whatever it holds.
namespace caddis {
inline namespace JSONExtensions {

/// `\n \r \t \b \f`, and `\u` with four hexadecimal digits; every other character behind a backslash is
/// itself. Each `\u` is one unit, so a surrogate pair is two of them. What is no digit, or lies behind the
/// end, counts as the digit 0. A backslash at the end stays.
///
/// With `javaScript` also `\v`, `\x` with two digits, and `\O` (the capital letter), which is U+0000.
String stringByConvertingJSONToCharacters(const String& text, bool javaScript = false);
inline String stringByConvertingJavaScriptToCharacters(const String& text)
{
    return stringByConvertingJSONToCharacters(text, true);
}

/// Backspace, tab, line feed, form feed and carriage return become `\b \t \n \f \r`; the quotation mark, the
/// slash and the backslash get a backslash before them; all else stays, other control characters included.
String stringByConvertingCharactersToJSON(const String& text);

} // namespace JSONExtensions
} // namespace caddis
