#pragma once

#include <string_view>

namespace caddis {

enum class DigitOrder { ByCharacter, ByValue };

/// How two texts stand in the order of the Unicode collation's root locale (UTS 10): below 0, 0 or above 0.
/// With `DigitOrder::ByValue` runs of digits count as numbers, so "2" stands before "10".
///
/// ICU's collation library is loaded at the first call; without it texts stand in the order of their units.
int collate(std::u16string_view left, std::u16string_view right, DigitOrder digits);

} // namespace caddis
