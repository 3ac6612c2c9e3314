#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <emmintrin.h>
#include <string_view>

/// Where the next interesting unit stands: eight units a step, for the inner loops of the scanners.
namespace caddis {

namespace detail {

// `match` sets all bits of the lanes that it wants.
template <typename Match> std::size_t indexWhere(std::u16string_view text, std::size_t from, Match match)
{
    const auto firstIn = [&](const char16_t* units) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
        return static_cast<unsigned>(_mm_movemask_epi8(match(block)));
    };
    for (; from + 8 <= text.size(); from += 8) {
        if (const unsigned lanes = firstIn(text.data() + from))
            return from + static_cast<unsigned>(std::countr_zero(lanes)) / 2;
    }
    if (from == text.size())
        return from;
    char16_t rest[8] = {};
    std::memcpy(rest, text.data() + from, (text.size() - from) * sizeof *rest);
    const unsigned lanes = firstIn(rest);
    return lanes ? std::min(text.size(), from + static_cast<unsigned>(std::countr_zero(lanes)) / 2)
                 : text.size();
}

} // namespace detail

/// The index of the first unit from `from` on that is one of `Wanted`; the text's length when there is none.
template <char16_t... Wanted> std::size_t indexOfUnit(std::u16string_view text, std::size_t from)
{
    return detail::indexWhere(text, from, [](__m128i block) {
        __m128i found = _mm_setzero_si128();
        ((found = _mm_or_si128(found, _mm_cmpeq_epi16(block, _mm_set1_epi16(static_cast<short>(Wanted))))),
            ...);
        return found;
    });
}

/// The index of the first unit from `from` on that is above 127; the text's length when there is none.
inline std::size_t indexOfNonAscii(std::u16string_view text, std::size_t from)
{
    return detail::indexWhere(text, from, [](__m128i block) {
        const __m128i high = _mm_and_si128(block, _mm_set1_epi16(static_cast<short>(0xFF80)));
        return _mm_xor_si128(_mm_cmpeq_epi16(high, _mm_setzero_si128()), _mm_set1_epi16(-1));
    });
}

} // namespace caddis
