#pragma once

#include "Command.h"

/// Commands that the library does in this process, since no operation of the helper covers them.
namespace caddis::tool {

/// A book's text comes from the helper, as part of its metadata, and so do that of a PDF and of a web
/// archive; a page ("-" is standard input) is converted here.
ExitCode text(const Invocation& invocation);
ExitCode toc(const Invocation& invocation);
ExitCode html(const Invocation& invocation);
/// What a page says of itself: title, date, canonical and base URL, its meta elements.
ExitCode head(const Invocation& invocation);

} // namespace caddis::tool
