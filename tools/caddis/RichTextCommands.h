#pragma once

#include "Command.h"

namespace caddis::tool {

/// The plain text of a file that the helper can open as rich text; nil when it can't.
std::optional<String> textOfDocument(const Invocation& invocation, const std::string& file);

/// A file as rich text: printed as plain text, or written as what -o names, an .rtfd package, .rtf or .txt.
ExitCode richtext(const Invocation& invocation);

} // namespace caddis::tool
