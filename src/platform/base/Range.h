#pragma once

#include <compare>
#include <cstddef>
#include <limits>

namespace caddis {

/// The location of something that is not there.
inline constexpr std::size_t NotFound = std::numeric_limits<std::size_t>::max();

/// A run of units or bytes: `length` of them from index `location` on.
struct Range {
    std::size_t location = NotFound;
    std::size_t length = 0;

    constexpr std::size_t end() const { return location + length; }
    constexpr bool isFound() const { return location != NotFound; }
    constexpr bool contains(std::size_t index) const
    {
        return index >= location && index - location < length;
    }

    friend constexpr bool operator==(const Range&, const Range&) = default;
};

} // namespace caddis
