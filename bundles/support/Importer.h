#pragma once

#include "bundles/support/Attributes.h"

#include <string>

namespace caddis::bundles {

/// What a bundle is: reads the file at `path` and says what it found. `contentType` is in lower case.
///
/// False when the file can't be read as what it claims to be; what was found until then stays. May throw:
/// nothing leaves the bundle.
bool importFile(Attributes& attributes, std::string_view contentType, const std::string& path);

} // namespace caddis::bundles
