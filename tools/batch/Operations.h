#pragma once

#include "client/HelperPool.h"

#include <string>
#include <string_view>
#include <vector>

namespace caddis::tool {

/// The operations that can be done to many files: info, text, thumbnail, preview, icon, richtext, movie,
/// webarchive, pdf, supports; "info+thumbnail" does both.
bool isOperation(std::string_view name);

/// What a helper is asked for an operation. `size` is that of pictures, in pixels.
std::vector<HelperQuestion> questionsFor(std::string_view operation, const String& file, std::uint32_t size);

/// Loads in a fresh helper what the first file would have to wait for.
void warmUp(const HelperProxy& helper);

} // namespace caddis::tool
