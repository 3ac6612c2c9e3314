#pragma once

#include "Command.h"

/// Commands about files, each named on the command line by its path.
namespace caddis::tool {

ExitCode info(const Invocation& invocation);
ExitCode supports(const Invocation& invocation);
ExitCode bookmark(const Invocation& invocation);

} // namespace caddis::tool
