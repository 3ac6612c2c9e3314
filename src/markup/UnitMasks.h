#pragma once

#include <cstddef>
#include <cstdint>

namespace caddis {

/// Which of 64 consecutive units belong to the classes that steer the tag scanner; bit k speaks of unit k.
///
/// `nameEnd` may also name units that end no name: it has all white space, '/' and '>', and besides every
/// unit up to U+0020 and from U+0080 on.
struct alignas(64) UnitMasks {
    std::uint64_t less, greater, doubleQuote, singleQuote, equals, nameEnd;
};

inline constexpr std::size_t BlockUnits = 64;

/// Classifies `blocks` times 64 units, with the widest vectors that the processor has.
void classifyUnits(const char16_t* units, std::size_t blocks, UnitMasks* masks);

enum class VectorWidth { SSE2, AVX2, AVX512 };

VectorWidth widestVectors();
/// Holds all later classifications to `width`, which the processor must have; for tests and benchmarks.
void useVectors(VectorWidth width);

} // namespace caddis
