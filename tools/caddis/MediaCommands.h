#pragma once

#include "Command.h"

/// The commands that show pictures and movies.
namespace caddis::tool {

ExitCode movie(const Invocation& invocation);
ExitCode pdfOfImage(const Invocation& invocation);

} // namespace caddis::tool
