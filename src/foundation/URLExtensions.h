#pragma once

#include "platform/base/String.h"

namespace caddis {
inline namespace NSURLOstraExtensions {

/// The text of a URL up to its first "#". Same: returns `url` itself when there is none.
String stringURLWithoutAnchor(const String& url);

} // namespace NSURLOstraExtensions
} // namespace caddis
