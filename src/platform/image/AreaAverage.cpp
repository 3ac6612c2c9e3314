#include "platform/image/AreaAverage.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <emmintrin.h>

namespace caddis {

namespace {

// Most pixels lie wholly under one pixel of the result: they are added up as integers, 16 bits a component,
// which hold up to 512 of them.
constexpr std::uint32_t MostPixelsInSixteenBits = 512;

__m128 toFloats(const std::uint8_t* pixel)
{
    std::int32_t bytes = 0;
    std::memcpy(&bytes, pixel, sizeof bytes);
    const __m128i zero = _mm_setzero_si128();
    const __m128i words = _mm_unpacklo_epi8(_mm_cvtsi32_si128(bytes), zero);
    return _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, zero));
}

// The four sums of at most MostPixelsInSixteenBits pixels, 32 bits each.
__m128i shortSum(const std::uint8_t* pixels, std::uint32_t count)
{
    const __m128i zero = _mm_setzero_si128();
    __m128i sums = zero;
    for (; count >= 4; count -= 4, pixels += 16) {
        const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
        sums = _mm_add_epi16(sums, _mm_unpacklo_epi8(four, zero));
        sums = _mm_add_epi16(sums, _mm_unpackhi_epi8(four, zero));
    }
    __m128i total = _mm_add_epi32(_mm_unpacklo_epi16(sums, zero), _mm_unpackhi_epi16(sums, zero));
    for (; count > 0; --count, pixels += 4)
        total = _mm_add_epi32(total, _mm_cvtps_epi32(toFloats(pixels)));
    return total;
}

__m128 sum(const std::uint8_t* pixels, std::uint32_t count)
{
    __m128 total = _mm_setzero_ps();
    while (count > 0) {
        const std::uint32_t some = std::min(count, MostPixelsInSixteenBits);
        total = _mm_add_ps(total, _mm_cvtepi32_ps(shortSum(pixels, some)));
        pixels += std::size_t { some } * 4;
        count -= some;
    }
    return total;
}

} // namespace

AreaAverage::AreaAverage(
    std::uint32_t sourceWide, std::uint32_t sourceHigh, std::uint32_t wide, std::uint32_t high)
    : m_sourceWide(sourceWide)
    , m_sourceHigh(sourceHigh)
    , m_wide(wide)
    , m_high(high)
    , m_averaged(std::size_t { wide } * 4)
    , m_sums(std::size_t { wide } * 4)
    , m_result(std::size_t { wide } * high * 4)
{
    m_spans.reserve(wide);
    const double step = static_cast<double>(sourceWide) / wide;
    for (std::uint32_t x = 0; x < wide; ++x) {
        const double start = x * step;
        const double end = x + 1 == wide ? sourceWide : (x + 1) * step;
        const auto first = std::min(static_cast<std::uint32_t>(start), sourceWide - 1);
        const auto last = std::min(static_cast<std::uint32_t>(end), sourceWide - 1);
        const bool isOne = first == last;
        const double lastPart = end - last;
        m_spans.push_back({ first, isOne ? 0 : last - first - 1, last,
            static_cast<float>(isOne ? end - start : first + 1 - start),
            static_cast<float>(isOne ? 0 : lastPart) });
    }
}

void AreaAverage::averageRow(const std::uint8_t* pixels)
{
    float* out = m_averaged.data();
    for (const Span& span : m_spans) {
        __m128 total
            = _mm_mul_ps(toFloats(pixels + std::size_t { span.first } * 4), _mm_set1_ps(span.firstPart));
        if (span.inner > 0)
            total = _mm_add_ps(total, sum(pixels + (std::size_t { span.first } + 1) * 4, span.inner));
        const __m128 last = toFloats(pixels + std::size_t { span.last } * 4);
        total = _mm_add_ps(total, _mm_mul_ps(last, _mm_set1_ps(span.lastPart)));
        _mm_storeu_ps(out, total);
        out += 4;
    }
}

void AreaAverage::accumulate(float part)
{
    const std::size_t count = m_sums.size();
    for (std::size_t index = 0; index < count; ++index)
        m_sums[index] += m_averaged[index] * part;
}

void AreaAverage::finishRow()
{
    const double area
        = static_cast<double>(m_sourceWide) / m_wide * (static_cast<double>(m_sourceHigh) / m_high);
    const auto factor = static_cast<float>(1 / area);
    std::uint8_t* out = m_result.data() + std::size_t { m_row } * m_wide * 4;
    for (float& value : m_sums) {
        *out++ = static_cast<std::uint8_t>(std::min(value * factor + 0.5F, 255.0F));
        value = 0;
    }
    ++m_row;
}

void AreaAverage::addRow(const std::uint8_t* pixels)
{
    if (m_row >= m_high)
        return;
    const double top = m_sourceRow++;
    if (m_sourceWide == m_wide && m_sourceHigh == m_high) {
        std::memcpy(m_result.data() + std::size_t { m_row } * m_wide * 4, pixels, std::size_t { m_wide } * 4);
        ++m_row;
        return;
    }
    averageRow(pixels);
    const bool isLastRow = m_sourceRow == m_sourceHigh;
    const double end = static_cast<double>(m_sourceHigh) * (m_row + 1) / m_high;
    if (top + 1 < end && !isLastRow) {
        accumulate(1);
        return;
    }
    accumulate(static_cast<float>(isLastRow ? 1 : end - top));
    finishRow();
    if (m_row < m_high && top + 1 > end)
        accumulate(static_cast<float>(top + 1 - end));
}

std::vector<std::uint8_t> AreaAverage::take() { return std::move(m_result); }

} // namespace caddis
