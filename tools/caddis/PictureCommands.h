#pragma once

#include "Command.h"

namespace caddis::tool {

/// What is known of pictures, and with -o their thumbnails; --size is the longer side in pixels.
ExitCode thumbnail(const Invocation& invocation);

/// A picture of a file of any kind, and with --icon its icon where it has none.
ExitCode preview(const Invocation& invocation);

} // namespace caddis::tool
