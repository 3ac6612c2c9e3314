#pragma once

#include "platform/image/Reader.h"
#include "platform/image/engine/Bytes.h"

#include <array>

namespace caddis::image {

/// A device-independent bitmap: what a BMP file has behind its first 14 bytes, and an icon for each of its
/// sizes. All headers from OS/2's 12 bytes to Windows' 124, 1 to 32 bits, run lengths, bit fields.
class DIB {
public:
    enum class Use { File, Icon };

    /// `header` is the header's place. `pixels` is that of the pixels; 0: behind the header and its colours.
    /// An icon is half as high as it says, and a mask of clear pixels stands behind it. Throws Broken.
    DIB(Bytes bytes, std::size_t header, std::size_t pixels, Use use);

    const ImageInfo& info() const { return m_info; }
    void decode(RowSink& sink) const;
    /// A whole file of another kind in the place of pixels; empty: there is none.
    std::string_view embeddedFile() const;

private:
    struct Mask {
        std::uint32_t bits = 0;
        int shift = 0; // Of its lowest bit.
        std::uint32_t most = 0; // The component's largest value; 0: there is no such component.
        std::uint8_t of(std::uint32_t pixel) const;
    };

    void readHeader(std::size_t place);
    void readCoreHeader(std::size_t place);
    void readMasks(std::size_t place);
    void setMasks(std::array<std::uint32_t, 4> bits);
    std::size_t bytesPerRow(std::uint32_t bits) const;
    std::size_t rowFromTop(std::size_t y) const;
    std::size_t placeOfRow(std::size_t y) const;
    std::vector<std::uint8_t> unpackedRuns() const;
    std::uint32_t indexAt(std::size_t row, std::size_t x) const;
    void setColour(std::uint32_t index, std::uint8_t* out) const;
    void setRow(std::size_t y, std::uint8_t* out) const;
    void applyIconMask(std::size_t y, std::uint8_t* out) const;
    bool hasAlphaBytes() const;

    Bytes m_bytes;
    ImageInfo m_info;
    std::uint32_t m_bits = 0;
    std::uint32_t m_compression = 0;
    bool m_isTopDown = false;
    bool m_isOS2 = false;
    std::size_t m_colours = 0; // Place of the colour table.
    std::uint32_t m_colourCount = 0;
    std::uint32_t m_bytesPerColour = 4;
    std::size_t m_pixels = 0;
    std::size_t m_iconMask = 0; // Place of the mask; 0: none.
    std::array<Mask, 4> m_masks {};
};

} // namespace caddis::image
