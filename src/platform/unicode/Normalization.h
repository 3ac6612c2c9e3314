#pragma once

#include "platform/base/String.h"

namespace caddis {

/// The text in normalisation form C: an e and a combining acute accent become one é.
///
/// Same: returns `text` itself when it is in that form already; text below U+0300 always is, and costs one
/// pass.
String precomposedStringWithCanonicalMapping(const String& text);

} // namespace caddis
