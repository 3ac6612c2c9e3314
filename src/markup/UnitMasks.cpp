#include "markup/UnitMasks.h"

#include <immintrin.h>

// Every version first squeezes 64 units into 64 bytes with saturation. What does not fit in a byte becomes 0
// or 255, and so no unit turns into one of the marks, while both count as a possible end of a name, like all
// bytes that are negative or at most 32 when read as signed: one comparison finds them.

namespace caddis {

namespace {

void classifySSE2(const char16_t* units, std::size_t blocks, UnitMasks* masks)
{
    for (const UnitMasks* end = masks + blocks; masks != end; ++masks, units += BlockUnits) {
        *masks = {};
        for (int part = 0; part < 4; ++part) {
            const auto* source = reinterpret_cast<const __m128i*>(units) + 2 * part;
            const __m128i bytes = _mm_packus_epi16(_mm_loadu_si128(source), _mm_loadu_si128(source + 1));
            const auto add = [&](std::uint64_t& mask, __m128i found) {
                mask |= static_cast<std::uint64_t>(_mm_movemask_epi8(found)) << (16 * part);
            };
            const __m128i greater = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('>'));
            const __m128i ends = _mm_or_si128(
                _mm_cmplt_epi8(bytes, _mm_set1_epi8(33)), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/')));
            add(masks->less, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('<')));
            add(masks->greater, greater);
            add(masks->doubleQuote, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')));
            add(masks->singleQuote, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\'')));
            add(masks->equals, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('=')));
            add(masks->nameEnd, _mm_or_si128(greater, ends));
        }
    }
}

// A lambda would not be compiled for the wider vectors, hence the function.
__attribute__((target("avx2"))) inline std::uint64_t maskOf(__m256i low, __m256i high)
{
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(low))
        | static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm256_movemask_epi8(high))) << 32;
}

__attribute__((target("avx2"))) inline std::uint64_t equalTo(char mark, __m256i low, __m256i high)
{
    const __m256i marks = _mm256_set1_epi8(mark);
    return maskOf(_mm256_cmpeq_epi8(low, marks), _mm256_cmpeq_epi8(high, marks));
}

__attribute__((target("avx2"))) void classifyAVX2(const char16_t* units, std::size_t blocks, UnitMasks* masks)
{
    constexpr int InOrder = 0xD8; // The pack works within 128-bit lanes.
    const __m256i limit = _mm256_set1_epi8(33);
    for (const UnitMasks* end = masks + blocks; masks != end; ++masks, units += BlockUnits) {
        const auto* source = reinterpret_cast<const __m256i*>(units);
        const __m256i low = _mm256_permute4x64_epi64(
            _mm256_packus_epi16(_mm256_loadu_si256(source), _mm256_loadu_si256(source + 1)), InOrder);
        const __m256i high = _mm256_permute4x64_epi64(
            _mm256_packus_epi16(_mm256_loadu_si256(source + 2), _mm256_loadu_si256(source + 3)), InOrder);
        masks->less = equalTo('<', low, high);
        masks->greater = equalTo('>', low, high);
        masks->doubleQuote = equalTo('"', low, high);
        masks->singleQuote = equalTo('\'', low, high);
        masks->equals = equalTo('=', low, high);
        masks->nameEnd = maskOf(_mm256_cmpgt_epi8(limit, low), _mm256_cmpgt_epi8(limit, high))
            | equalTo('/', low, high) | masks->greater;
    }
}

__attribute__((target("avx512f,avx512bw"))) void classifyAVX512(
    const char16_t* units, std::size_t blocks, UnitMasks* masks)
{
    constexpr std::uint32_t All = 0xFFFFFFFF; // g++ 12 warns of the forms without a lane mask.
    for (const UnitMasks* end = masks + blocks; masks != end; ++masks, units += BlockUnits) {
        const __m256i low = _mm512_maskz_cvtusepi16_epi8(All, _mm512_loadu_si512(units));
        const __m256i high = _mm512_maskz_cvtusepi16_epi8(All, _mm512_loadu_si512(units + 32));
        const __m512i bytes = _mm512_maskz_inserti64x4(0xFF, _mm512_castsi256_si512(low), high, 1);
        masks->less = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('<'));
        masks->greater = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('>'));
        masks->doubleQuote = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('"'));
        masks->singleQuote = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('\''));
        masks->equals = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('='));
        masks->nameEnd = _mm512_cmplt_epi8_mask(bytes, _mm512_set1_epi8(33))
            | _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('/')) | masks->greater;
    }
}

using Classifier = void (*)(const char16_t*, std::size_t, UnitMasks*);

Classifier classifierOf(VectorWidth width)
{
    switch (width) {
    case VectorWidth::AVX512:
        return classifyAVX512;
    case VectorWidth::AVX2:
        return classifyAVX2;
    default:
        return classifySSE2;
    }
}

Classifier& classifier()
{
    static Classifier chosen = classifierOf(widestVectors());
    return chosen;
}

} // namespace

VectorWidth widestVectors()
{
    if (__builtin_cpu_supports("avx512bw"))
        return VectorWidth::AVX512;
    return __builtin_cpu_supports("avx2") ? VectorWidth::AVX2 : VectorWidth::SSE2;
}

void useVectors(VectorWidth width) { classifier() = classifierOf(width); }

void classifyUnits(const char16_t* units, std::size_t blocks, UnitMasks* masks)
{
    classifier()(units, blocks, masks);
}

} // namespace caddis
