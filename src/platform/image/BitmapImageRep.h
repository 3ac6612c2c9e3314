#pragma once

#include "platform/image/ImageSource.h"

namespace caddis {

/// Pixels, and how large they are shown. Those of a file are decoded when they are wanted, and no larger than
/// they are wanted; its orientation is applied.
class BitmapImageRep {
public:
    BitmapImageRep(Bitmap bitmap, Size size);
    /// The picture of a file, as large as its resolution says; nil when its header can't be read.
    static std::optional<BitmapImageRep> imageRepWithSource(const ImageSource& source, std::size_t index);

    std::uint32_t pixelsWide() const { return m_pixelsWide; }
    std::uint32_t pixelsHigh() const { return m_pixelsHigh; }
    bool hasAlpha() const { return m_hasAlpha; }
    Size size() const { return m_size; } ///< points

    /// Nil when the pixels can't be read.
    std::optional<Bitmap> bitmap() const;
    /// The same, maybe made smaller, but neither side below that of `wanted`.
    std::optional<Bitmap> bitmapOfAtLeast(Size wanted) const;

private:
    BitmapImageRep() = default;

    std::uint32_t m_pixelsWide = 0;
    std::uint32_t m_pixelsHigh = 0;
    bool m_hasAlpha = false;
    Size m_size;
    std::optional<Bitmap> m_bitmap;
    std::optional<ImageSource> m_source;
    std::size_t m_index = 0;
};

} // namespace caddis
