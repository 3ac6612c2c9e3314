#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <tiffio.h>
#include <vector>

#include "platform/image/Reader.h"

namespace caddis::image {

/// The rows of a TIFF picture's commonest forms, one at a time: whole numbers of 1, 2, 4, 8, 12, 16 and 32
/// bits or 32-bit floats, not tiled, all samples of a pixel together, grey, palette, RGB or CMYK.
class TIFFRows {
public:
    /// Nil: the selected picture has another form.
    static std::optional<TIFFRows> of(TIFF* tiff);

    PixelLayout layout() const;
    /// The next row, 4 bytes a pixel; valid until the following call. Throws Broken when it can't be
    /// unpacked.
    const std::uint8_t* next();

private:
    explicit TIFFRows(TIFF* tiff);

    void unpack();
    void unpackBits();
    void setPixels();
    void setGrey();
    void setColours(std::uint32_t count);
    void setIndexed();

    TIFF* m_tiff;
    std::uint32_t m_wide = 0;
    std::uint16_t m_bits = 1;
    std::uint16_t m_samples = 1; // Of a pixel.
    std::uint16_t m_photometric = PHOTOMETRIC_MINISWHITE;
    bool m_isFloat = false;
    std::uint16_t m_alpha = 0; // EXTRASAMPLE_ASSOCALPHA, EXTRASAMPLE_UNASSALPHA or none.
    const std::uint16_t* m_palette[3] = {};
    std::uint32_t m_row = 0;
    std::vector<std::uint8_t> m_packed;
    std::vector<std::uint8_t> m_bytes; // The samples, 8 bits each.
    std::vector<std::uint8_t> m_pixels;
};

/// The kind of alpha in the selected picture, as in EXTRASAMPLES; 0: none.
std::uint16_t kindOfAlpha(TIFF* tiff);

template <typename Number> Number fieldOf(TIFF* tiff, std::uint32_t tag)
{
    Number number {};
    TIFFGetFieldDefaulted(tiff, tag, &number);
    return number;
}

} // namespace caddis::image
