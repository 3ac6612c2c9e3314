#pragma once

#include "platform/modules/Module.h"

namespace caddis::pdf {

/// Opened at the first call.
const Module& module();

} // namespace caddis::pdf
