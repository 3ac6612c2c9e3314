#pragma once

#include "Command.h"

/// Many files at once, over several helpers.
namespace caddis::tool {

/// A record for each file: see Results.h.
ExitCode batch(const Invocation& invocation);

} // namespace caddis::tool
