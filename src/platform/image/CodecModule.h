#pragma once

#include "platform/image/Reader.h"

/// Each module has this one entry; null or an exception: not a file of its kind after all.
extern "C" [[gnu::visibility("default")]] caddis::image::Reader* caddisOpenReader(const caddis::Data& data);

namespace caddis::image {

using OpenModuleReader = Reader*(const Data& data);

} // namespace caddis::image
