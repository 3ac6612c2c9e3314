#pragma once

#include "platform/image/AreaAverage.h"
#include "platform/image/Bitmap.h"
#include "platform/image/Reader.h"

namespace caddis::image {

/// Makes a bitmap of exactly the target's size out of the rows of a codec, in the layout of bitmaps.
class Shrinker final : public RowSink {
public:
    explicit Shrinker(Target target)
        : m_target(target)
    {
    }

    void begin(std::uint32_t wide, std::uint32_t high, PixelLayout layout) override;
    void row(const std::uint8_t* pixels) override;

    /// What came, its colours made sRGB; nil when that is no row at all. Rows that are missing are clear, or
    /// black.
    std::optional<Bitmap> take(const std::optional<Data>& profile);

private:
    Target m_target;
    std::uint32_t m_wide = 0;
    PixelLayout m_layout = PixelLayout::Opaque;
    std::uint32_t m_rows = 0;
    std::optional<AreaAverage> m_average;
    std::vector<std::uint8_t> m_row; // One row, its colours multiplied by alpha.
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// The bitmap as it is seen when `orientation` (1 to 8; TIFF 6.0) is applied.
Bitmap oriented(const Bitmap& bitmap, int orientation);

} // namespace caddis::image
