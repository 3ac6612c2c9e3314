#pragma once

#include "platform/base/Value.h"
#include "platform/script/EventDescriptor.h"

#include <optional>

namespace caddis {

/// The descriptor that a caller sent as its type and data: made anew here, a list or record from the
/// flattened form. Null for anything that is no such pair.
EventDescriptor scriptParameter(const std::optional<Value>& pair);

/// Empty for a value that is no text.
String textOf(const std::optional<Value>& value);

} // namespace caddis
