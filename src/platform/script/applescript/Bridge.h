#pragma once

#include "platform/script/EventDescriptor.h"
#include "platform/script/applescript/Interpreter.h"

/// Values of the language as descriptors, and back.
namespace caddis::applescript {

/// Records hold their terms under the terms' codes and all other labels in one 'usrf' list; what has no
/// descriptor of its own becomes its source text. Fails with -2706 beyond the depth of flattened descriptors.
EventDescriptor descriptorFromValue(Interpreter& interpreter, const Datum& value);

/// Unknown types become raw data and pass through a script unchanged.
Datum valueFromDescriptor(const EventDescriptor& descriptor);

} // namespace caddis::applescript
