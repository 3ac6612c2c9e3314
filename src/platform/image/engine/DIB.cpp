#include "platform/image/engine/DIB.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

namespace caddis::image {

namespace {

// BITMAPINFOHEADER.biCompression.
enum Compression : std::uint32_t {
    Plain = 0,
    RunsOfBytes = 1,
    RunsOfHalves = 2,
    BitFields = 3,
    JPEG = 4,
    PNG = 5,
    AlphaBitFields = 6,
};

constexpr std::uint32_t CoreHeader = 12;
constexpr std::uint32_t InfoHeader = 40;
constexpr std::uint32_t LargestSide = 1 << 24;

bool isKnown(std::uint32_t bits, std::uint32_t compression)
{
    switch (compression) {
    case Plain:
        return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    case RunsOfBytes:
        return bits == 8;
    case RunsOfHalves:
        return bits == 4;
    case BitFields:
    case AlphaBitFields:
        return bits == 16 || bits == 32;
    case JPEG:
    case PNG:
        return true;
    default:
        return false;
    }
}

} // namespace

std::uint8_t DIB::Mask::of(std::uint32_t pixel) const
{
    const std::uint64_t value = (pixel & bits) >> shift;
    return static_cast<std::uint8_t>(most ? (value * 255 + most / 2) / most : 0);
}

DIB::DIB(Bytes bytes, std::size_t header, std::size_t pixels, Use use)
    : m_bytes(bytes)
{
    const std::uint32_t size = m_bytes.le32(header);
    m_isOS2 = size == CoreHeader || size == 16 || size == 64;
    if (size == CoreHeader)
        readCoreHeader(header);
    else
        readHeader(header);
    if (use == Use::Icon)
        m_info.pixelsHigh /= 2;
    if (!isKnown(m_bits, m_compression) || !limits::allows(m_info.pixelsWide, m_info.pixelsHigh)
        || std::max(m_info.pixelsWide, m_info.pixelsHigh) > LargestSide)
        throw Broken();
    m_info.depth = m_bits <= 8 ? m_bits : m_bits == 16 ? 5 : 8;
    m_info.isIndexed = m_bits <= 8;
    const std::size_t behindColours = m_colours + std::size_t { m_colourCount } * m_bytesPerColour;
    m_pixels = pixels > 0 ? pixels : behindColours;
    // What lies outside the file is black, but some of the pixels must lie inside.
    if (!m_bytes.has(m_pixels, 1))
        throw Broken();
    if (use == Use::Icon) {
        m_iconMask = m_pixels + bytesPerRow(m_bits) * m_info.pixelsHigh;
        if (m_bits == 32 && hasAlphaBytes())
            setMasks({ 0xFF0000, 0xFF00, 0xFF, 0xFF000000 });
        m_info.hasAlpha = true;
    } else {
        m_info.hasAlpha = m_masks[3].most > 0;
    }
}

void DIB::readCoreHeader(std::size_t place)
{
    m_info.pixelsWide = m_bytes.le16(place + 4);
    m_info.pixelsHigh = m_bytes.le16(place + 6);
    m_bits = m_bytes.le16(place + 10);
    m_bytesPerColour = 3;
    m_colours = place + CoreHeader;
    m_colourCount = m_bits <= 8 ? 1U << m_bits : 0;
    if (m_bits == 16)
        setMasks({ 0x7C00, 0x3E0, 0x1F, 0 });
}

void DIB::readHeader(std::size_t place)
{
    const std::uint32_t size = m_bytes.le32(place);
    if (size < 16 || size > 1024 || !m_bytes.has(place, 16))
        throw Broken();
    const auto high = static_cast<std::int32_t>(m_bytes.le32(place + 8));
    m_isTopDown = high < 0;
    m_info.pixelsWide = m_bytes.le32(place + 4);
    m_info.pixelsHigh = high < 0 ? 0U - static_cast<std::uint32_t>(high) : static_cast<std::uint32_t>(high);
    m_bits = m_bytes.le16(place + 14);
    std::uint32_t colourCount = 0;
    if (size >= InfoHeader) {
        m_compression = m_bytes.le32(place + 16);
        const auto perMeter = [&](std::size_t at) {
            const auto value = static_cast<std::int32_t>(m_bytes.le32(place + at));
            return value > 0 ? value * 0.0254 : 0;
        };
        m_info.dpiWidth = perMeter(24);
        m_info.dpiHeight = perMeter(28);
        colourCount = m_bytes.le32(place + 32);
    }
    // OS/2 has other methods under the same numbers.
    if (m_isOS2 && m_compression >= BitFields)
        throw Broken();
    m_colours = place + size;
    readMasks(place);
    const std::uint32_t most = m_bits <= 8 ? 1U << m_bits : 0;
    m_colourCount = colourCount > 0 || m_bits > 8 ? std::min(colourCount, 1U << 16) : most;
}

// The masks stand in the larger headers, or between the smallest and the colours.
void DIB::readMasks(std::size_t place)
{
    if (m_compression == BitFields || m_compression == AlphaBitFields) {
        const std::uint32_t size = m_bytes.le32(place);
        const bool hasAlpha = size >= 56 || m_compression == AlphaBitFields;
        std::array<std::uint32_t, 4> bits {};
        for (std::size_t index = 0; index < (hasAlpha ? 4U : 3U); ++index)
            bits[index] = m_bytes.le32(place + InfoHeader + index * 4);
        setMasks(bits);
        if (size == InfoHeader)
            m_colours += hasAlpha ? 16 : 12;
    } else if (m_bits == 16) {
        setMasks({ 0x7C00, 0x3E0, 0x1F, 0 });
    } else if (m_bits == 32) {
        setMasks({ 0xFF0000, 0xFF00, 0xFF, 0 });
    }
}

void DIB::setMasks(std::array<std::uint32_t, 4> bits)
{
    for (std::size_t index = 0; index < 4; ++index) {
        const int shift = bits[index] ? std::countr_zero(bits[index]) : 0;
        m_masks[index] = { bits[index], shift, bits[index] >> shift };
    }
}

std::size_t DIB::bytesPerRow(std::uint32_t bits) const
{
    return (std::size_t { m_info.pixelsWide } * bits + 31) / 32 * 4;
}

std::size_t DIB::rowFromTop(std::size_t y) const { return m_isTopDown ? y : m_info.pixelsHigh - 1 - y; }

std::size_t DIB::placeOfRow(std::size_t y) const { return m_pixels + rowFromTop(y) * bytesPerRow(m_bits); }

std::string_view DIB::embeddedFile() const
{
    const bool isFile = m_compression == JPEG || m_compression == PNG;
    return isFile ? m_bytes.run(m_pixels, m_bytes.size()) : std::string_view();
}

bool DIB::hasAlphaBytes() const
{
    const std::string_view pixels = m_bytes.run(m_pixels, bytesPerRow(32) * m_info.pixelsHigh);
    for (std::size_t at = 3; at < pixels.size(); at += 4)
        if (pixels[at] != 0)
            return true;
    return false;
}

// The indexes that run lengths stand for, rows as in the file. Skipped pixels have index 0.
std::vector<std::uint8_t> DIB::unpackedRuns() const
{
    const std::size_t wide = m_info.pixelsWide;
    const std::size_t high = m_info.pixelsHigh;
    if (!limits::allows(wide, high, limits::MostBytesInMemory))
        throw Broken();
    const bool isHalves = m_compression == RunsOfHalves;
    std::vector<std::uint8_t> indexes(wide * high);
    std::size_t x = 0;
    std::size_t y = 0;
    const auto put = [&](std::uint32_t byte, std::size_t at) {
        const std::uint32_t index = !isHalves ? byte : at % 2 ? byte & 15 : byte >> 4;
        if (x < wide && y < high)
            indexes[y * wide + x] = static_cast<std::uint8_t>(index);
        ++x;
    };
    for (std::size_t place = m_pixels; y < high && m_bytes.has(place, 2); place += 2) {
        const std::uint32_t count = m_bytes.u8(place);
        const std::uint32_t second = m_bytes.u8(place + 1);
        if (count > 0) {
            for (std::size_t at = 0; at < count; ++at)
                put(second, at);
        } else if (second == 0) { // End of the row.
            x = 0;
            ++y;
        } else if (second == 1) { // End of the picture.
            break;
        } else if (second == 2) { // To the right and up.
            x += m_bytes.u8(place + 2);
            y += m_bytes.u8(place + 3);
            place += 2;
        } else { // Indexes as they are, padded to two bytes.
            for (std::size_t at = 0; at < second; ++at)
                put(m_bytes.u8(place + 2 + (isHalves ? at / 2 : at)), at);
            place += ((isHalves ? (second + 1) / 2 : second) + 1) / 2 * 2;
        }
    }
    return indexes;
}

std::uint32_t DIB::indexAt(std::size_t row, std::size_t x) const
{
    const std::uint32_t byte = m_bytes.u8(row + x * m_bits / 8);
    return byte >> (8 - m_bits - x * m_bits % 8) & ((1U << m_bits) - 1);
}

void DIB::setColour(std::uint32_t index, std::uint8_t* out) const
{
    const std::size_t colour = m_colours + std::size_t { index } * m_bytesPerColour;
    const bool isThere = index < m_colourCount;
    for (std::size_t component = 0; component < 3; ++component)
        out[component] = static_cast<std::uint8_t>(isThere ? m_bytes.u8(colour + 2 - component) : 0);
    out[3] = 255;
}

void DIB::setRow(std::size_t y, std::uint8_t* out) const
{
    const std::size_t row = placeOfRow(y);
    for (std::size_t x = 0; x < m_info.pixelsWide; ++x, out += 4) {
        if (m_bits <= 8) {
            setColour(indexAt(row, x), out);
        } else if (m_bits == 24) {
            for (std::size_t component = 0; component < 3; ++component)
                out[component] = static_cast<std::uint8_t>(m_bytes.u8(row + x * 3 + 2 - component));
            out[3] = 255;
        } else {
            const std::uint32_t pixel = m_bits == 16 ? m_bytes.le16(row + x * 2) : m_bytes.le32(row + x * 4);
            for (std::size_t component = 0; component < 4; ++component)
                out[component] = m_masks[component].of(pixel);
            if (m_masks[3].most == 0)
                out[3] = 255;
        }
    }
}

// Behind an icon: one bit a pixel, set where it is clear.
void DIB::applyIconMask(std::size_t y, std::uint8_t* out) const
{
    const std::size_t row = m_iconMask + rowFromTop(y) * bytesPerRow(1);
    for (std::size_t x = 0; x < m_info.pixelsWide; ++x)
        if (m_bytes.u8(row + x / 8) >> (7 - x % 8) & 1)
            out[x * 4 + 3] = 0;
}

void DIB::decode(RowSink& sink) const
{
    const std::size_t wide = m_info.pixelsWide;
    const bool isRuns = m_compression == RunsOfBytes || m_compression == RunsOfHalves;
    const auto runs = isRuns ? unpackedRuns() : std::vector<std::uint8_t>();
    sink.begin(
        m_info.pixelsWide, m_info.pixelsHigh, m_info.hasAlpha ? PixelLayout::Straight : PixelLayout::Opaque);
    std::vector<std::uint8_t> row(wide * 4);
    bool isBlank = false; // Rows outside the file are all the same, and are made once.
    for (std::size_t y = 0; y < m_info.pixelsHigh; ++y) {
        const bool isOutside = !isRuns && !m_bytes.has(placeOfRow(y), 1);
        if (isRuns)
            for (std::size_t x = 0; x < wide; ++x)
                setColour(runs[rowFromTop(y) * wide + x], &row[x * 4]);
        else if (!isOutside || !isBlank)
            setRow(y, row.data());
        if (m_iconMask > 0 && m_masks[3].most == 0)
            applyIconMask(y, row.data());
        isBlank = isOutside;
        sink.row(row.data());
    }
}

} // namespace caddis::image
