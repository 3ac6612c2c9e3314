#pragma once

#include <string_view>

namespace caddis {

/// Whether the tag's class, style or size means that its element is not to be seen: of class "hidden", or
/// with a "STYLE" and hidden, not displayed, placed far outside the page, or with a width or height of at
/// most 3 pixels.
bool isHiddenTag(std::u16string_view tag);

/// Whether the "STYLE" of a font tag sets a size of 1 to 4 points.
bool isTinyFont(std::u16string_view tag);

} // namespace caddis
