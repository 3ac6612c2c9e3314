#pragma once

#include "platform/script/EventDescriptor.h"
#include "platform/script/applescript/Interpreter.h"

/// Values of the language as descriptors, and back.
namespace caddis::applescript {

/// Words have the codes of `terms`, the dictionary of the application that it is for, or else the language's.
/// Records hold their terms under the terms' codes and all other labels in one 'usrf' list; what has no
/// descriptor of its own becomes its source text. Fails with -2706 beyond the depth of flattened descriptors.
EventDescriptor descriptorFromValue(
    Interpreter& interpreter, const Datum& value, const ApplicationTerms* terms = nullptr);

/// Unknown types become raw data and pass through a script unchanged. `application` is the one that it comes
/// from: codes are then those of its dictionary, and object specifiers name its objects.
Datum valueFromDescriptor(const EventDescriptor& descriptor, const Datum& application = {});

} // namespace caddis::applescript
