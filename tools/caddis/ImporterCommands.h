#pragma once

#include "Command.h"

/// Commands about the importers that are installed.
namespace caddis::tool {

ExitCode importers(const Invocation& invocation);

} // namespace caddis::tool
