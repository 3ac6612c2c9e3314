#include "markup/UnitMasks.h"

#include <immintrin.h>

// Every version first squeezes 64 units into 64 bytes with saturation. What does not fit in a byte becomes 0
// or 255, and so no unit turns into one of the marks, while both count as a possible end of a name, like all
// bytes that are negative or at most 32 when read as signed: one comparison finds them.

namespace caddis {

namespace {

void classifySSE2(const char16_t* units, std::size_t blocks, UnitMasks& masks, std::size_t first)
{
    for (std::size_t block = first; block < first + blocks; ++block, units += BlockUnits) {
        masks.less[block] = masks.greater[block] = masks.doubleQuote[block] = 0;
        masks.singleQuote[block] = masks.equals[block] = masks.nameEnd[block] = 0;
        for (int part = 0; part < 4; ++part) {
            const auto* source = reinterpret_cast<const __m128i*>(units) + 2 * part;
            const __m128i bytes = _mm_packus_epi16(_mm_loadu_si128(source), _mm_loadu_si128(source + 1));
            const auto add = [&](std::uint64_t& mask, __m128i found) {
                mask |= static_cast<std::uint64_t>(_mm_movemask_epi8(found)) << (16 * part);
            };
            const __m128i greater = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('>'));
            const __m128i ends = _mm_or_si128(
                _mm_cmplt_epi8(bytes, _mm_set1_epi8(33)), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('/')));
            add(masks.less[block], _mm_cmpeq_epi8(bytes, _mm_set1_epi8('<')));
            add(masks.greater[block], greater);
            add(masks.doubleQuote[block], _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')));
            add(masks.singleQuote[block], _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\'')));
            add(masks.equals[block], _mm_cmpeq_epi8(bytes, _mm_set1_epi8('=')));
            add(masks.nameEnd[block], _mm_or_si128(greater, ends));
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

__attribute__((target("avx2"))) void classifyAVX2(
    const char16_t* units, std::size_t blocks, UnitMasks& masks, std::size_t first)
{
    constexpr int InOrder = 0xD8; // The pack works within 128-bit lanes.
    const __m256i limit = _mm256_set1_epi8(33);
    for (std::size_t block = first; block < first + blocks; ++block, units += BlockUnits) {
        const auto* source = reinterpret_cast<const __m256i*>(units);
        const __m256i low = _mm256_permute4x64_epi64(
            _mm256_packus_epi16(_mm256_loadu_si256(source), _mm256_loadu_si256(source + 1)), InOrder);
        const __m256i high = _mm256_permute4x64_epi64(
            _mm256_packus_epi16(_mm256_loadu_si256(source + 2), _mm256_loadu_si256(source + 3)), InOrder);
        masks.less[block] = equalTo('<', low, high);
        masks.greater[block] = equalTo('>', low, high);
        masks.doubleQuote[block] = equalTo('"', low, high);
        masks.singleQuote[block] = equalTo('\'', low, high);
        masks.equals[block] = equalTo('=', low, high);
        masks.nameEnd[block] = maskOf(_mm256_cmpgt_epi8(limit, low), _mm256_cmpgt_epi8(limit, high))
            | equalTo('/', low, high) | masks.greater[block];
    }
}

__attribute__((target("avx512f,avx512bw"))) void classifyAVX512(
    const char16_t* units, std::size_t blocks, UnitMasks& masks, std::size_t first)
{
    constexpr std::uint32_t All = 0xFFFFFFFF; // g++ 12 warns of the forms without a lane mask.
    for (std::size_t block = first; block < first + blocks; ++block, units += BlockUnits) {
        const __m256i low = _mm512_maskz_cvtusepi16_epi8(All, _mm512_loadu_si512(units));
        const __m256i high = _mm512_maskz_cvtusepi16_epi8(All, _mm512_loadu_si512(units + 32));
        const __m512i bytes = _mm512_maskz_inserti64x4(0xFF, _mm512_castsi256_si512(low), high, 1);
        masks.less[block] = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('<'));
        masks.greater[block] = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('>'));
        masks.doubleQuote[block] = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('"'));
        masks.singleQuote[block] = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('\''));
        masks.equals[block] = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('='));
        masks.nameEnd[block] = _mm512_cmplt_epi8_mask(bytes, _mm512_set1_epi8(33))
            | _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8('/')) | masks.greater[block];
    }
}

using Classifier = void (*)(const char16_t*, std::size_t, UnitMasks&, std::size_t);

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

void classifyUnits(const char16_t* units, std::size_t blocks, UnitMasks& masks, std::size_t first)
{
    classifier()(units, blocks, masks, first);
    for (std::size_t block = first; block < first + blocks; ++block) {
        std::uint64_t odd = masks.doubleQuote[block];
        for (unsigned shift = 1; shift < BlockUnits; shift *= 2)
            odd ^= odd << shift;
        const bool oddBefore = block > 0 && masks.inDouble[block - 1] >> (BlockUnits - 1);
        masks.inDouble[block] = oddBefore ? ~odd : odd;
    }
}

} // namespace caddis
