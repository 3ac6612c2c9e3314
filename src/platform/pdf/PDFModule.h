#pragma once

#include "platform/modules/Module.h"

namespace caddis::pdf {

/// The modules, each opened at the first call.
const Module& module();
const Module& writerModule();

} // namespace caddis::pdf
