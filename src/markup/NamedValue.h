#pragma once

#include "markup/UpperAscii.h"
#include "platform/base/Range.h"

#include <optional>

namespace caddis {

/// How a list of named values is written: `name="value"` in a tag, `name: value` in a style.
struct NamedValueSyntax {
    char16_t assignment;
    char16_t end; ///< ends an unquoted value, besides white space
    std::size_t leastSurplus; ///< a text not longer than the name and this holds no value
};

inline constexpr NamedValueSyntax TagSyntax { u'=', u'>', 5 };
inline constexpr NamedValueSyntax StyleSyntax { u':', u';', 1 };

/// Lenient mends values whose closing quote is missing: they end before the next meta tag, or where the tag
/// does.
enum class Reading { Strict, Lenient };

/// Where the value of `name` stands in `text`, trimmed at its end. Nil: there is none, or it is empty.
std::optional<Range> rangeOfNamedValue(
    std::u16string_view text, UpperAscii name, NamedValueSyntax syntax, Reading reading = Reading::Strict);

} // namespace caddis
