#pragma once

#include "Command.h"

/// Commands about the pages of a PDF. No operation of the helper covers them, so the library does them in
/// this process.
namespace caddis::tool {

/// One page as a PNG picture; --size is its longer side in pixels.
ExitCode page(const Invocation& invocation);
/// The document written anew, with nothing in it but what its pages show.
ExitCode pdfFix(const Invocation& invocation);

} // namespace caddis::tool
