#pragma once

#include "platform/modules/Module.h"

namespace caddis::image {

/// Opened at the first call.
const Module& module();

} // namespace caddis::image
