#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace caddis {

inline constexpr std::size_t BlockUnits = 64;

/// Bit masks of consecutive blocks of 64 units, one for each class of units that steers the tag scanner: bit
/// k of a word speaks of the block's unit k.
struct UnitMasks {
    /// Classified at once; one block more than are walked, so that every unit walked has what is behind it at
    /// hand.
    static constexpr std::size_t Batch = 32;
    static constexpr std::size_t Blocks = Batch + 1;

    using Words = std::uint64_t[Blocks + 1]; // The last one is room for reading a word from any byte.

    Words less;
    Words greater;
    Words doubleQuote;
    Words inDouble; ///< behind an odd number of double quotes, from the first block on
    Words singleQuote;
    Words equals;
    Words nameEnd; ///< white space, '/' and '>', and besides all units up to U+0020 and from U+0080 on

    /// The bits from unit `from` on, at least WindowUnits of them.
    static constexpr std::size_t WindowUnits = 57;
    static std::uint64_t window(const Words& words, std::size_t from)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, reinterpret_cast<const unsigned char*>(words) + from / 8, sizeof bits);
        return bits >> from % 8;
    }
};

/// Classifies `blocks` times 64 units, with the widest vectors that the processor has, as the blocks from
/// `first` on.
void classifyUnits(const char16_t* units, std::size_t blocks, UnitMasks& masks, std::size_t first);

enum class VectorWidth { SSE2, AVX2, AVX512 };

VectorWidth widestVectors();
/// Holds all later classifications to `width`, which the processor must have; for tests and benchmarks.
void useVectors(VectorWidth width);

} // namespace caddis
