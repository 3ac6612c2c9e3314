#pragma once

#include "platform/base/String.h"
#include "platform/unicode/StringEncoding.h"

#include <optional>

/// Names of character sets, as headers and pages write and misspell them, to encodings.
namespace caddis {
inline namespace XmlExtensions {

/// Forgiving: case, dashes, dots and the like do not count, and known misspellings are understood. InvalidId
/// when the name is not known; names of fewer than three letters and digits never are.
CFStringEncoding charset2CFStringEncoding(std::u16string_view name);
inline CFStringEncoding CFEncodingFromName(std::u16string_view name)
{
    return charset2CFStringEncoding(name);
}

/// The same as an NSStringEncoding; InvalidId when the name is not known or its encoding cannot be read here.
///
/// Logs "Unknown/Unsupported encoding: %@", but not for names that say nothing: an empty one, "auto", and the
/// single characters / 0 < >.
NSStringEncoding charset2NSStringEncoding(std::u16string_view name);
inline NSStringEncoding NSEncodingFromName(std::u16string_view name)
{
    return charset2NSStringEncoding(name);
}

/// The Mac OS encoding that stands behind "mac" or "x-mac" in a normalised name ("centraleurroman", or
/// nothing for the Roman one); InvalidId when there is none.
CFStringEncoding macEncodingNamed(std::u16string_view rest);

/// The encoding that pages of a URL's country were written in before UTF-8; InvalidId when its host does not
/// say.
NSStringEncoding defaultURLEncoding(const String& url);

} // namespace XmlExtensions
} // namespace caddis
