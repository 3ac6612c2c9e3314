#pragma once

#include <string_view>

namespace caddis {

/// Whether the tag's style or size means that its element is not to be seen: hidden, not displayed, placed
/// far outside the page, or with a width or height of at most 3 pixels. Without a "STYLE" it never is.
bool isHiddenStyle(std::u16string_view tag);

/// Whether the "STYLE" of a font tag sets a size of 1 to 4 points.
bool isTinyFont(std::u16string_view tag);

} // namespace caddis
