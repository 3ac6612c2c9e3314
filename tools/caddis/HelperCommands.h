#pragma once

#include "Command.h"

/// Commands about the helper itself.
namespace caddis::tool {

ExitCode ping(const Invocation& invocation);
ExitCode terminate(const Invocation& invocation);

} // namespace caddis::tool
