#include "platform/image/engine/TIFFRows.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace caddis::image {

namespace {

// Three copies of a row are in memory; no scanner makes any wider.
constexpr std::uint64_t MostSamplesOfARow = 16 << 20;

std::uint16_t coloursOf(std::uint16_t photometric)
{
    return photometric == PHOTOMETRIC_SEPARATED                              ? 4
        : photometric == PHOTOMETRIC_RGB || photometric == PHOTOMETRIC_YCBCR ? 3
                                                                             : 1;
}

bool isReadable(TIFF* tiff, std::uint16_t bits, std::uint16_t samples, std::uint16_t photometric)
{
    const bool isYCC = photometric == PHOTOMETRIC_YCBCR
        && fieldOf<std::uint16_t>(tiff, TIFFTAG_COMPRESSION) == COMPRESSION_JPEG;
    const bool isCMYK = photometric == PHOTOMETRIC_SEPARATED && samples >= 4
        && fieldOf<std::uint16_t>(tiff, TIFFTAG_INKSET) == INKSET_CMYK;
    const bool isIndexed = photometric == PHOTOMETRIC_PALETTE && samples == 1 && bits <= 8;
    const bool isPlain
        = photometric <= PHOTOMETRIC_MINISBLACK || (photometric == PHOTOMETRIC_RGB && samples >= 3);
    const bool isWhole
        = bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 12 || bits == 16 || bits == 32;
    const auto format = fieldOf<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT);
    const bool isNumber = format == SAMPLEFORMAT_UINT || (format == SAMPLEFORMAT_IEEEFP && bits == 32);
    const auto planes = fieldOf<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG);
    return (isYCC || isCMYK || isIndexed || isPlain) && isWhole && isNumber && samples >= 1
        && (planes == PLANARCONFIG_CONTIG || samples == 1) && !TIFFIsTiled(tiff);
}

} // namespace

std::uint16_t kindOfAlpha(TIFF* tiff)
{
    const auto colours = coloursOf(fieldOf<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC));
    std::uint16_t count = 0;
    const std::uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds);
    if (count == 0 || !kinds || colours == 4
        || fieldOf<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL) <= colours)
        return 0;
    // Many programs write alpha and don't say so.
    return kinds[0] == EXTRASAMPLE_UNSPECIFIED && colours == 3 ? EXTRASAMPLE_ASSOCALPHA : kinds[0];
}

std::optional<TIFFRows> TIFFRows::of(TIFF* tiff)
{
    TIFFRows rows(tiff);
    if (!isReadable(tiff, rows.m_bits, rows.m_samples, rows.m_photometric))
        return std::nullopt;
    if (rows.m_photometric == PHOTOMETRIC_PALETTE
        && !TIFFGetField(tiff, TIFFTAG_COLORMAP, &rows.m_palette[0], &rows.m_palette[1], &rows.m_palette[2]))
        return std::nullopt;
    const auto size = static_cast<std::uint64_t>(std::max<tmsize_t>(TIFFScanlineSize(tiff), 0));
    const std::uint64_t count = std::uint64_t { rows.m_wide } * rows.m_samples;
    if (count > MostSamplesOfARow || size < (count * rows.m_bits + 7) / 8 || size > count * 4 + 16)
        return std::nullopt;
    rows.m_packed.resize(size);
    rows.m_bytes.resize(count);
    rows.m_pixels.resize(std::size_t { rows.m_wide } * 4);
    return rows;
}

TIFFRows::TIFFRows(TIFF* tiff)
    : m_tiff(tiff)
    , m_wide(fieldOf<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH))
    , m_bits(fieldOf<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE))
    , m_samples(fieldOf<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL))
    , m_photometric(fieldOf<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC))
    , m_isFloat(fieldOf<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT) == SAMPLEFORMAT_IEEEFP)
    , m_alpha(kindOfAlpha(tiff))
{
}

PixelLayout TIFFRows::layout() const
{
    if (m_photometric == PHOTOMETRIC_SEPARATED)
        return PixelLayout::InvertedCMYK;
    return m_alpha == EXTRASAMPLE_UNASSALPHA ? PixelLayout::Straight
        : m_alpha == EXTRASAMPLE_ASSOCALPHA  ? PixelLayout::Premultiplied
                                             : PixelLayout::Opaque;
}

const std::uint8_t* TIFFRows::next()
{
    if (TIFFReadScanline(m_tiff, m_packed.data(), m_row++, 0) < 0)
        throw Broken();
    unpack();
    setPixels();
    return m_pixels.data();
}

// libtiff gives numbers of 16 and 32 bits in the machine's own order.
void TIFFRows::unpack()
{
    const std::size_t count = m_bytes.size();
    const auto number = [this]<typename Number>(std::size_t index, Number value) {
        std::memcpy(&value, m_packed.data() + index * sizeof value, sizeof value);
        return value;
    };
    if (m_bits == 8)
        std::copy_n(m_packed.begin(), count, m_bytes.begin());
    else if (m_bits == 16)
        for (std::size_t index = 0; index < count; ++index)
            m_bytes[index] = static_cast<std::uint8_t>(number(index, std::uint16_t {}) >> 8);
    else if (m_isFloat)
        for (std::size_t index = 0; index < count; ++index) {
            const float value = number(index, float {});
            m_bytes[index]
                = static_cast<std::uint8_t>(value > 0 ? std::lrint(std::min(value, 1.0F) * 255) : 0);
        }
    else if (m_bits == 32)
        for (std::size_t index = 0; index < count; ++index)
            m_bytes[index] = static_cast<std::uint8_t>(number(index, std::uint32_t {}) >> 24);
    else
        unpackBits();
}

// Samples that are no whole bytes, the most significant bit first: shades become shades of 255, indexes stay.
void TIFFRows::unpackBits()
{
    const unsigned most = (1U << m_bits) - 1;
    const bool isIndex = m_photometric == PHOTOMETRIC_PALETTE;
    std::size_t bit = 0;
    for (std::uint8_t& byte : m_bytes) {
        const unsigned first = m_packed[bit / 8];
        const unsigned second = bit / 8 + 1 < m_packed.size() ? m_packed[bit / 8 + 1] : 0;
        const unsigned value = (first << 8 | second) >> (16 - bit % 8 - m_bits) & most;
        byte = static_cast<std::uint8_t>(isIndex ? value : value * 255 / most);
        bit += m_bits;
    }
}

void TIFFRows::setPixels()
{
    if (m_photometric == PHOTOMETRIC_PALETTE)
        setIndexed();
    else if (coloursOf(m_photometric) == 1)
        setGrey();
    else
        setColours(coloursOf(m_photometric));
}

void TIFFRows::setGrey()
{
    const unsigned flip = m_photometric == PHOTOMETRIC_MINISWHITE ? 255 : 0;
    const std::uint8_t* sample = m_bytes.data();
    for (std::size_t at = 0; at < m_pixels.size(); at += 4, sample += m_samples) {
        std::fill_n(&m_pixels[at], 3, static_cast<std::uint8_t>(sample[0] ^ flip));
        m_pixels[at + 3] = m_alpha ? sample[1] : 255;
    }
}

void TIFFRows::setColours(std::uint32_t count)
{
    const std::uint8_t* sample = m_bytes.data();
    for (std::size_t at = 0; at < m_pixels.size(); at += 4, sample += m_samples) {
        std::copy_n(sample, 3, &m_pixels[at]);
        m_pixels[at + 3] = count == 4 || m_alpha ? sample[3] : 255;
    }
    if (count == 4)
        for (std::uint8_t& ink : m_pixels)
            ink = static_cast<std::uint8_t>(255 - ink);
}

void TIFFRows::setIndexed()
{
    for (std::size_t x = 0; x < m_wide; ++x) {
        for (std::size_t component = 0; component < 3; ++component)
            m_pixels[x * 4 + component] = static_cast<std::uint8_t>(m_palette[component][m_bytes[x]] >> 8);
        m_pixels[x * 4 + 3] = 255;
    }
}

} // namespace caddis::image
