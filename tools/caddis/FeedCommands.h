#pragma once

#include "Command.h"

/// Commands about feeds and the dates in them, which the library does in this process.
namespace caddis::tool {

/// A feed as a page, or with --items as JSON, one item a line.
ExitCode feed(const Invocation& invocation);
/// The instant that each text is read as.
ExitCode date(const Invocation& invocation);

} // namespace caddis::tool
