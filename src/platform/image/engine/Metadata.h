#pragma once

#include "platform/image/Metadata.h"

namespace caddis::image {

/// The module's answers; empty without it. Like the module's own they may throw.
Dictionary readMetadata(const Data& file);
std::optional<RawPreviews> readRawPreviews(const Data& file);

} // namespace caddis::image
