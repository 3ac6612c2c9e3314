// Truevision's TGA 2.0: palettes, greys and colours of 15 to 32 bits, plain or in runs. The format has no
// signature at its start; isTGA tells by the header's plausibility.

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Readers.h"

#include <algorithm>
#include <vector>

namespace caddis::image {

namespace {

constexpr std::size_t HeaderSize = 18;

struct Header {
    std::uint32_t colourMapStart;
    std::uint32_t colourMapLength;
    std::uint32_t colourMapBits;
    std::uint32_t kind; // 1 palette, 2 colours, 3 greys.
    bool isRuns;
    std::uint32_t wide;
    std::uint32_t high;
    std::uint32_t bits;
    bool isMirrored;
    bool isTopDown;
    std::uint32_t alphaBits;
    std::size_t colourMap; // Its place.
    std::size_t pixels; // Their place.

    explicit Header(const Bytes& bytes)
        : colourMapStart(bytes.le16(3))
        , colourMapLength(bytes.u8(1) == 1 ? bytes.le16(5) : 0)
        , colourMapBits(bytes.u8(7))
        , kind(bytes.u8(2) & 7)
        , isRuns((bytes.u8(2) & 8) != 0)
        , wide(bytes.le16(12))
        , high(bytes.le16(14))
        , bits(bytes.u8(16))
        , isMirrored((bytes.u8(17) & 0x10) != 0)
        , isTopDown((bytes.u8(17) & 0x20) != 0)
        , alphaBits(bytes.u8(17) & 15)
        , colourMap(HeaderSize + bytes.u8(0))
        , pixels(colourMap + std::size_t { colourMapLength } * ((colourMapBits + 7) / 8))
    {
    }

    bool isPlausible(const Bytes& bytes) const
    {
        const bool hasBits = kind == 1 ? bits == 8 || bits == 16
            : kind == 2                ? bits == 15 || bits == 16 || bits == 24 || bits == 32
            : kind == 3                ? bits == 8 || bits == 16
                                       : false;
        const bool hasMap
            = colourMapBits == 15 || colourMapBits == 16 || colourMapBits == 24 || colourMapBits == 32;
        const bool isMapped = bytes.u8(1) == 1 && hasMap && colourMapLength > 0;
        const bool isUnmapped = bytes.u8(1) == 0 && kind != 1;
        return hasBits && (isMapped || isUnmapped) && (bytes.u8(2) & ~11U) == 0 && wide > 0 && high > 0
            && (bytes.u8(17) & 0xC0) == 0 && alphaBits <= 8 && bytes.has(pixels, 1);
    }
};

class TGAReader final : public Reader {
public:
    explicit TGAReader(const Data& data)
        : m_data(data)
        , m_bytes(m_data)
        , m_header(m_bytes)
    {
        if (!m_header.isPlausible(m_bytes))
            throw Broken();
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        ImageInfo info;
        info.pixelsWide = m_header.wide;
        info.pixelsHigh = m_header.high;
        info.hasAlpha = hasAlpha();
        info.isIndexed = m_header.kind == 1;
        info.colorModel = m_header.kind == 3 ? ColorModel::Gray : ColorModel::RGB;
        return info;
    }

    void decode(std::size_t, Target, RowSink& sink) override
    {
        if (!limits::allows(m_header.wide, m_header.high, limits::MostPixelsInMemory))
            throw Broken();
        const std::size_t size = bytesPerPixel();
        const std::vector<std::uint8_t> runs = m_header.isRuns ? unpackedRuns() : std::vector<std::uint8_t>();
        const std::string_view unpacked(reinterpret_cast<const char*>(runs.data()), runs.size());
        const Bytes pixels(m_header.isRuns ? unpacked : m_bytes.run(m_header.pixels, m_bytes.size()));
        sink.begin(m_header.wide, m_header.high, hasAlpha() ? PixelLayout::Straight : PixelLayout::Opaque);
        std::vector<std::uint8_t> row(std::size_t { m_header.wide } * 4);
        for (std::size_t y = 0; y < m_header.high; ++y) {
            const std::size_t fromY = m_header.isTopDown ? y : m_header.high - 1 - y;
            for (std::size_t x = 0; x < m_header.wide; ++x) {
                const std::size_t fromX = m_header.isMirrored ? m_header.wide - 1 - x : x;
                setPixel(pixels, (fromY * m_header.wide + fromX) * size, &row[x * 4]);
            }
            sink.row(row.data());
        }
    }

private:
    // Sixteen bits without a word on alpha are fifteen; so are thirty-two twenty-four.
    bool hasAlpha() const
    {
        const bool isWide = m_header.kind == 2 && m_header.bits == 32;
        return m_header.alphaBits > 0 && (isWide || (m_header.kind == 3 && m_header.bits == 16));
    }
    std::size_t bytesPerPixel() const { return (m_header.bits + 7) / 8; }

    // Packets: a count, then one pixel for all of them or each.
    std::vector<std::uint8_t> unpackedRuns() const
    {
        const std::size_t size = bytesPerPixel();
        std::vector<std::uint8_t> pixels(std::size_t { m_header.wide } * m_header.high * size);
        std::size_t out = 0;
        std::size_t place = m_header.pixels;
        while (out < pixels.size() && place < m_bytes.size()) {
            const std::uint32_t packet = m_bytes.u8(place++);
            const std::size_t count = std::min(((packet & 0x7F) + 1) * size, pixels.size() - out);
            const bool isRun = (packet & 0x80) != 0;
            for (std::size_t at = 0; at < count; ++at)
                pixels[out++] = static_cast<std::uint8_t>(m_bytes.u8(place + (isRun ? at % size : at)));
            place += isRun ? size : count;
        }
        return pixels;
    }

    void setPixel(const Bytes& bytes, std::size_t place, std::uint8_t* out) const
    {
        if (m_header.kind == 1) {
            const std::uint32_t index = m_header.bits == 16 ? bytes.le16(place) : bytes.u8(place);
            const std::size_t size = (m_header.colourMapBits + 7) / 8;
            const std::uint32_t entry = index - m_header.colourMapStart;
            const bool isThere = index >= m_header.colourMapStart && entry < m_header.colourMapLength;
            setColour(m_bytes, isThere ? m_header.colourMap + entry * size : m_bytes.size(),
                m_header.colourMapBits, out);
        } else if (m_header.kind == 3) {
            std::fill_n(out, 3, static_cast<std::uint8_t>(bytes.u8(place)));
            out[3] = static_cast<std::uint8_t>(m_header.bits == 16 ? bytes.u8(place + 1) : 255);
        } else {
            setColour(bytes, place, m_header.bits, out);
        }
    }

    static void setColour(const Bytes& bytes, std::size_t place, std::uint32_t bits, std::uint8_t* out)
    {
        if (bits >= 24) {
            for (std::size_t component = 0; component < 3; ++component)
                out[component] = static_cast<std::uint8_t>(bytes.u8(place + 2 - component));
            out[3] = static_cast<std::uint8_t>(bits == 32 ? bytes.u8(place + 3) : 255);
            return;
        }
        const std::uint32_t value = bytes.le16(place);
        for (std::size_t component = 0; component < 3; ++component)
            out[component] = static_cast<std::uint8_t>((value >> (10 - 5 * component) & 31) * 255 / 31);
        out[3] = 255;
    }

    Data m_data;
    Bytes m_bytes;
    Header m_header;
};

} // namespace

bool isTGA(std::string_view bytes) { return Header(Bytes(bytes)).isPlausible(Bytes(bytes)); }

std::unique_ptr<Reader> openTGA(const Data& data) { return std::make_unique<TGAReader>(data); }

} // namespace caddis::image
