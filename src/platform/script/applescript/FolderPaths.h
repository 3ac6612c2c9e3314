#pragma once

#include "platform/script/applescript/Symbols.h"

namespace caddis::applescript {

/// The folder that a name of `path to` stands for here; it ends with a slash. Nil for what has no folder.
std::optional<String> folderPath(Symbol folder, Symbol domain);

} // namespace caddis::applescript
