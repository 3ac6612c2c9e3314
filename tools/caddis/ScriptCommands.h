#pragma once

#include "Command.h"

/// Scripts, which the library runs in this process: the helper's operations answer nothing.
namespace caddis::tool {

/// script run, script check, script handlers.
ExitCode script(const Invocation& invocation);

} // namespace caddis::tool
