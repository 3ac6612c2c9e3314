#pragma once

#include "platform/image/Bitmap.h"
#include "platform/image/ImageTypes.h"

#include <vector>

namespace caddis {

/// 8 bits a component, in sRGB, not multiplied by alpha.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;

    static constexpr Color clear() { return { 0, 0, 0, 0 }; }
    static constexpr Color white() { return { 255, 255, 255, 255 }; }

    friend constexpr bool operator==(const Color&, const Color&) = default;
};

/// A bitmap that is being drawn, clear at first. One unit of its coordinates is one pixel; y points up. The
/// edges of what is drawn are rounded to whole pixels.
class GraphicsContext {
public:
    /// Throws Exception when a side is 0 or the bitmap has more than 100 million pixels.
    GraphicsContext(std::uint32_t wide, std::uint32_t high);
    /// The size rounded up to whole pixels.
    explicit GraphicsContext(Size size);

    Rect bounds() const { return { 0, 0, static_cast<double>(m_wide), static_cast<double>(m_high) }; }

    ImageInterpolation imageInterpolation = ImageInterpolation::Default;
    /// Vector pictures are always drawn with smooth edges; this is kept for who asks for it.
    bool shouldAntialias = true;

    /// Puts the colour in the place of what is there.
    void fill(Rect rect, Color color);
    /// Draws the part `from` of a bitmap, in its pixels with y upwards, over what is there.
    void draw(const Bitmap& bitmap, Rect from, Rect rect);
    void draw(const Bitmap& bitmap, Rect rect)
    {
        draw(bitmap, { 0, 0, bitmap.size().width, bitmap.size().height }, rect);
    }
    /// Turns what has been drawn upside down.
    void flip();

    /// What was drawn; the context is empty afterwards. It has alpha when a pixel of it is not opaque.
    Bitmap take();

private:
    // Whole pixels, rows from the top; it may reach beyond the bitmap.
    struct Box {
        std::int64_t left;
        std::int64_t top;
        std::int64_t right;
        std::int64_t bottom;
    };
    Box boxOf(Rect rect) const;

    std::uint32_t m_wide;
    std::uint32_t m_high;
    std::vector<std::uint8_t> m_pixels; // As in Bitmap.
};

/// The part of the bitmap (rows from the top), at exactly so many pixels.
struct PixelBox {
    std::uint32_t left;
    std::uint32_t top;
    std::uint32_t wide;
    std::uint32_t high;
};
Bitmap resampled(const Bitmap& bitmap, PixelBox part, std::uint32_t wide, std::uint32_t high,
    ImageInterpolation interpolation);

} // namespace caddis
