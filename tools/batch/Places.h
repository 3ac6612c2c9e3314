#pragma once

#include "platform/base/String.h"

#include <string>

namespace caddis::tool {

/// The path as the helper, which has another working directory, must be told it.
String absolutePath(const std::string& path);

/// The helper's program: CADDIS_HELPER, else beside this program (a build tree), else under libexec.
String helperPath();

} // namespace caddis::tool
