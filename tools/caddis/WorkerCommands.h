#pragma once

#include "Command.h"

/// Commands about a queue that many machines share; the program caddis-worker does them.
namespace caddis::tool {

ExitCode worker(const Invocation& invocation);
ExitCode enqueue(const Invocation& invocation);

} // namespace caddis::tool
