#pragma once

#include "platform/base/URL.h"

#include <optional>

namespace caddis {
inline namespace NSURLOstraExtensions {

/// The URL that `reference` means in a document at `base` (RFC 3986, section 5.2); an absolute reference is
/// itself.
///
/// What a URL may not show (white space, controls, quotes, non-ASCII) is percent-escaped as UTF-8 first;
/// escapes that are there already stay, so that a path written either way gives the same URL. Nil when
/// nothing is left that is a URL, as against a `mailto:` base.
std::optional<URL> URLRelativeTo(const URL& base, const String& reference);

} // namespace NSURLOstraExtensions
} // namespace caddis
