#pragma once

#include "Command.h"

namespace caddis::tool {

/// One page about all files in a folder: see ReportPage.h.
ExitCode report(const Invocation& invocation);

} // namespace caddis::tool
