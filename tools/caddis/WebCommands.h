#pragma once

#include "Command.h"

/// Commands that read saved pages.
namespace caddis::tool {

/// Nil for what is no web archive.
std::optional<String> textOfWebArchive(const Invocation& invocation, const std::string& file);

/// The text of a web archive; with --source its page's markup, and with --json all that the helper says.
ExitCode webarchive(const Invocation& invocation);

/// A page as rich text, with what it refers to: an RTFD package where -o ends with .rtfd, else the same as
/// one block of data.
ExitCode html2rtfd(const Invocation& invocation);

} // namespace caddis::tool
