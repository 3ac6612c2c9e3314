#pragma once

#include <cstdint>
#include <vector>

namespace caddis {

/// Shrinks a picture whose rows come one after the other: each pixel of the result is the mean of the area
/// that it covers, parts of pixels counted as parts. Memory is that of the result and one row.
///
/// Rows have 4 bytes a pixel; each of the four is averaged by itself, so colours must be multiplied by alpha
/// before.
class AreaAverage {
public:
    /// No side of the result is 0 or longer than that of the source.
    AreaAverage(std::uint32_t sourceWide, std::uint32_t sourceHigh, std::uint32_t wide, std::uint32_t high);

    /// The next row of the source; rows behind the last are dropped.
    void addRow(const std::uint8_t* pixels);

    /// The rows of the result. What lies below the last row that was added is zero.
    std::vector<std::uint8_t> take();

private:
    // The pixels of the source under one pixel of the result: `inner` whole ones from `first` + 1 on, and
    // parts of the two at its sides.
    struct Span {
        std::uint32_t first;
        std::uint32_t inner;
        std::uint32_t last;
        float firstPart;
        float lastPart;
    };

    void averageRow(const std::uint8_t* pixels);
    void accumulate(float part);
    void finishRow();

    std::uint32_t m_sourceWide;
    std::uint32_t m_sourceHigh;
    std::uint32_t m_wide;
    std::uint32_t m_high;
    std::uint32_t m_sourceRow = 0;
    std::uint32_t m_row = 0;
    std::vector<Span> m_spans;
    std::vector<float> m_averaged; // One row of the source, as wide as the result.
    std::vector<float> m_sums; // The row of the result that is being added up.
    std::vector<std::uint8_t> m_result;
};

} // namespace caddis
