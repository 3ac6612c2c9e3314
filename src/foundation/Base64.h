#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

namespace caddis {
inline namespace NSDataOstraExtensions {

/// Standard base64 (RFC 4648, section 4) with "=" padding and no line breaks.
String base64EncodedString(const Data& data);

} // namespace NSDataOstraExtensions
} // namespace caddis
