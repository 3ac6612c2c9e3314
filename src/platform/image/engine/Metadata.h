#pragma once

#include "platform/image/Metadata.h"

namespace caddis::image {

/// The module's answers; empty without it. Like the module's own they may throw.
Dictionary readMetadata(const Data& file);
std::optional<RawPreviews> readRawPreviews(const Data& file);
/// The same of a Canon CR3 file, which the module's library can't tell.
std::optional<RawPreviews> readCR3Previews(const Data& file);

} // namespace caddis::image
