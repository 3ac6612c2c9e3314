#pragma once

#include "platform/base/Data.h"

#include <optional>
#include <string>

namespace caddis::tool {

/// What the file holds, or standard input for "-"; nil when it can't be read.
std::optional<Data> contentsOf(const std::string& file);

} // namespace caddis::tool
