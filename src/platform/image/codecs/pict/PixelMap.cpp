#include "platform/image/codecs/pict/PixelMap.h"

#include "platform/image/Limits.h"
#include "platform/image/Reader.h"

namespace caddis::image {

namespace {

constexpr Colour Opaque = 0xFF000000;
constexpr std::uint32_t LeastPackedRow = 8;
constexpr std::uint32_t LongRow = 250; // From here on a row's packed length has two bytes.

enum Packing : std::uint32_t { Usual = 0, None = 1, WithoutPad = 2, Words = 3, Components = 4 };

Colour colourOf(std::uint32_t red, std::uint32_t green, std::uint32_t blue)
{
    return Opaque | red << 16 | green << 8 | blue;
}

std::uint32_t of5Bits(std::uint32_t value) { return (value & 31) * 255 / 31; }

// Runs as Apple's PackBits makes them, of units of one or two bytes.
void unpack(std::string_view packed, std::size_t unit, std::vector<std::uint8_t>& row)
{
    std::size_t at = 0;
    const auto put = [&](std::string_view bytes) {
        for (std::size_t index = 0; index < bytes.size() && at < row.size(); ++index)
            row[at++] = static_cast<std::uint8_t>(bytes[index]);
    };
    for (std::size_t place = 0; place < packed.size() && at < row.size();) {
        const std::size_t count = static_cast<std::uint8_t>(packed[place++]);
        if (count == 128)
            continue;
        const std::size_t units = count < 128 ? 1 : 257 - count;
        const std::size_t bytes = (count < 128 ? count + 1 : 1) * unit;
        const std::string_view literal = packed.substr(std::min(place, packed.size()), bytes);
        for (std::size_t index = 0; index < units; ++index)
            put(literal);
        place += bytes;
    }
}

class RowReader {
public:
    RowReader(const PixelMapHead& head, bool isPacked, Colour fore, Colour back, bool isZeroClear)
        : m_head(head)
        , m_packing(head.packing)
        , m_colours(head.colours)
        , m_wide(static_cast<std::size_t>(head.bounds.wide()))
    {
        if (m_packing == Usual)
            m_packing = head.bits == 16 ? Words : head.bits == 32 ? Components : Usual;
        m_isPacked
            = isPacked && head.bytesPerRow >= LeastPackedRow && m_packing != None && m_packing != WithoutPad;
        if (m_colours.empty() && head.bits <= 8)
            m_colours = { back, fore };
        if (!m_colours.empty() && isZeroClear)
            m_colours[0] = 0;
        m_row.resize(bytesOfRow());
    }

    void read(Cursor& cursor, Colour* out)
    {
        if (m_isPacked) {
            const std::size_t length = m_head.bytesPerRow > LongRow ? cursor.u16() : cursor.u8();
            unpack(cursor.run(length), m_packing == Words ? 2 : 1, m_row);
        } else {
            const std::string_view bytes = cursor.run(m_row.size());
            std::copy(bytes.begin(), bytes.end(), m_row.begin());
        }
        for (std::size_t x = 0; x < m_wide; ++x)
            out[x] = pixel(x);
    }

private:
    std::size_t bytesOfRow() const
    {
        if (m_packing == WithoutPad)
            return m_wide * 3;
        const std::size_t needed = (m_wide * m_head.bits + 7) / 8;
        return std::max<std::size_t>(needed, m_head.bytesPerRow);
    }

    Colour pixel(std::size_t x) const
    {
        const std::uint8_t* row = m_row.data();
        if (m_head.bits == 16) {
            const auto word = static_cast<std::uint32_t>(row[x * 2] << 8 | row[x * 2 + 1]);
            return colourOf(of5Bits(word >> 10), of5Bits(word >> 5), of5Bits(word));
        }
        if (m_head.bits == 32 && m_packing == Components) { // First all reds, maybe behind all alphas.
            const std::uint8_t* red = row + (m_head.components == 4 ? m_wide : 0);
            return colourOf(red[x], red[m_wide + x], red[m_wide * 2 + x]);
        }
        if (m_head.bits == 32) {
            const std::uint8_t* red = row + (m_packing == WithoutPad ? x * 3 : x * 4 + 1);
            return colourOf(red[0], red[1], red[2]);
        }
        const std::size_t shift = 8 - m_head.bits - x * m_head.bits % 8;
        const std::size_t index = row[x * m_head.bits / 8] >> shift & ((1U << m_head.bits) - 1);
        return index < m_colours.size() ? m_colours[index] : Opaque;
    }

    const PixelMapHead& m_head;
    std::uint32_t m_packing;
    std::vector<Colour> m_colours;
    std::size_t m_wide;
    bool m_isPacked = false;
    std::vector<std::uint8_t> m_row;
};

void readColours(Cursor& cursor, std::vector<Colour>& colours)
{
    cursor.skip(4);
    const bool isOrdered = (cursor.u16() & 0x8000) != 0;
    const std::size_t count = std::min<std::size_t>(cursor.u16() + 1, 256);
    colours.assign(count, Opaque);
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t place = cursor.u16();
        const Colour colour = readColour(cursor);
        if (isOrdered || place < 256) {
            colours.resize(std::max(colours.size(), isOrdered ? index + 1 : place + 1), Opaque);
            colours[isOrdered ? index : place] = colour;
        }
    }
}

} // namespace

Colour readColour(Cursor& cursor)
{
    const std::uint32_t red = cursor.u16() >> 8;
    const std::uint32_t green = cursor.u16() >> 8;
    return colourOf(red, green, cursor.u16() >> 8);
}

PixelMapHead PixelMapHead::read(Cursor& cursor, bool isDirect)
{
    PixelMapHead head;
    if (isDirect)
        cursor.skip(4);
    const std::uint32_t bytesPerRow = cursor.u16();
    head.bytesPerRow = bytesPerRow & 0x3FFF;
    head.bounds = cursor.box();
    if (!isDirect && (bytesPerRow & 0x8000) == 0)
        return head;
    cursor.skip(2);
    head.packing = cursor.u16();
    cursor.skip(4 + 8 + 2); // The packed size, the resolution, the kind of pixels.
    head.bits = cursor.u16();
    head.components = cursor.u16();
    cursor.skip(2 + 4 + 4 + 4);
    head.hasColours = !isDirect;
    if (head.hasColours)
        readColours(cursor, head.colours);
    return head;
}

std::vector<Colour> readPixels(
    Cursor& cursor, const PixelMapHead& head, bool isPacked, Colour fore, Colour back, bool isZeroClear)
{
    const bool isKnown = head.bits == 1 || head.bits == 2 || head.bits == 4 || head.bits == 8
        || (!head.hasColours && (head.bits == 16 || head.bits == 32));
    const auto wide = static_cast<std::size_t>(head.bounds.wide());
    const auto high = static_cast<std::size_t>(head.bounds.high());
    if (!isKnown || !limits::allows(wide, high, limits::MostPixelsInMemory / 2))
        throw Broken();
    std::vector<Colour> pixels(wide * high);
    RowReader rows(head, isPacked, fore, back, isZeroClear);
    for (std::size_t y = 0; y < high && !cursor.isAtEnd(); ++y)
        rows.read(cursor, &pixels[y * wide]);
    return pixels;
}

} // namespace caddis::image
