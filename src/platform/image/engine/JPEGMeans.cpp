// ITU-T T.81, Annexes B, F and G: of a progressive file the scans of the coefficient 0. The first scan of a
// component holds the differences from block to block, Huffman-coded, without their lowest bits; the later
// ones hold one of these bits a block each.

#include "platform/image/engine/JPEGMeans.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace caddis::image {

namespace {

enum Marker : std::uint8_t {
    SOF2 = 0xC2,
    DHT = 0xC4,
    EOI = 0xD9,
    SOS = 0xDA,
    DQT = 0xDB,
    DRI = 0xDD,
    APP14 = 0xEE
};

constexpr std::size_t MostScans = 64;

// Bits of a scan, the most significant first; behind its end come zeros.
class BitReader {
public:
    explicit BitReader(std::string_view bytes)
        : m_at(reinterpret_cast<const std::uint8_t*>(bytes.data()))
        , m_end(m_at + bytes.size())
    {
    }

    /// The next 16 bits, which stay.
    std::uint32_t look()
    {
        while (m_count < 16)
            fill();
        return static_cast<std::uint32_t>(m_bits >> (m_count - 16) & 0xFFFF);
    }
    void skip(unsigned count) { m_count -= count; }
    std::uint32_t take(unsigned count) // At most 16.
    {
        const std::uint32_t bits = look() >> (16 - count);
        skip(count);
        return bits;
    }
    /// To behind the restart marker, which stands on a whole byte.
    void restart()
    {
        m_count = 0;
        m_bits = 0;
        if (m_end - m_at >= 2 && m_at[0] == 0xFF && m_at[1] >= 0xD0 && m_at[1] <= 0xD7)
            m_at += 2;
    }

private:
    // A byte 0xFF of data has a zero byte behind it; before anything else it is a marker, which ends the
    // data.
    void fill()
    {
        std::uint32_t four = 0xFFFFFFFF;
        if (m_end - m_at >= 4)
            std::memcpy(&four, m_at, 4);
        const bool hasFF = ((~four - 0x01010101) & four & 0x80808080) != 0;
        if (!hasFF) {
            m_bits = m_bits << 32 | __builtin_bswap32(four);
            m_count += 32;
            m_at += 4;
            return;
        }
        std::uint8_t byte = 0;
        const bool isMarker = m_at != m_end && *m_at == 0xFF && (m_end - m_at < 2 || m_at[1] != 0);
        if (m_at != m_end && !isMarker) {
            byte = *m_at++;
            m_at += byte == 0xFF ? 1 : 0;
        }
        m_bits = m_bits << 8 | byte;
        m_count += 8;
    }

    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
    std::uint64_t m_bits = 0;
    unsigned m_count = 0;
};

// T.81, Annex C and F.2.2.3. The short codes, which nearly all are, stand in a table that fits the nearest
// cache.
class HuffmanTable {
public:
    /// `counts`: how many codes of each length from 1 to 16 there are; `values` in the order of the codes.
    HuffmanTable(std::string_view counts, std::string_view values)
        : m_values(values)
    {
        std::size_t code = 0;
        std::size_t index = 0;
        for (unsigned length = 1; length <= LongestCode; ++length, code <<= 1) {
            const std::size_t count = static_cast<std::uint8_t>(counts[length - 1]);
            const std::size_t behind = code + count;
            if (index + count > values.size() || behind > std::size_t { 1 } << length)
                throw Broken();
            m_offsets[length] = index - code;
            m_limits[length] = static_cast<std::uint32_t>(behind << (LongestCode - length));
            for (; code < behind; ++code, ++index)
                if (length <= ShortBits)
                    std::fill_n(m_short.begin() + static_cast<std::ptrdiff_t>(code << (ShortBits - length)),
                        std::size_t { 1 } << (ShortBits - length),
                        Entry {
                            static_cast<std::uint8_t>(values[index]), static_cast<std::uint8_t>(length) });
        }
    }

    /// Bits that no code starts count as the value 0.
    std::uint32_t decode(BitReader& bits) const
    {
        const std::uint32_t look = bits.look();
        const Entry entry = m_short[look >> (LongestCode - ShortBits)];
        if (entry.length > 0) {
            bits.skip(entry.length);
            return entry.value;
        }
        unsigned length = ShortBits + 1;
        while (length <= LongestCode && look >= m_limits[length])
            ++length;
        bits.skip(std::min(length, LongestCode));
        if (length > LongestCode)
            return 0;
        return static_cast<std::uint8_t>(m_values[(look >> (LongestCode - length)) + m_offsets[length]]);
    }

private:
    static constexpr unsigned LongestCode = 16;
    static constexpr unsigned ShortBits = 10;

    struct Entry {
        std::uint8_t value = 0;
        std::uint8_t length = 0; // 0: the code is longer.
    };
    std::array<Entry, 1 << ShortBits> m_short {};
    std::array<std::uint32_t, LongestCode + 1> m_limits {}; // The first 16 bits behind each length's codes.
    std::array<std::size_t, LongestCode + 1> m_offsets {}; // From a code to its value's index; it may wrap.
    std::string m_values;
};

struct Component {
    std::uint32_t name = 0;
    std::uint32_t across = 1; // Sampling factors.
    std::uint32_t down = 1;
    std::uint32_t quantization = 0; // Number of its table.
    std::uint32_t blocksWide = 0; // Without what fills up the last unit.
    std::uint32_t blocksHigh = 0;
    std::size_t stride = 0;
    std::vector<std::int16_t> means; // As coded, times 2 to the power of the missing bits.
};

class Means {
public:
    explicit Means(const Bytes& bytes)
        : m_bytes(bytes)
    {
    }

    bool read()
    {
        std::size_t scans = 0;
        for (std::size_t place = 2; place + 1 < m_bytes.size();) {
            const JPEGSegment segment = segmentAt(m_bytes, place);
            if (segment.marker == EOI || (segment.marker == SOS && ++scans > MostScans))
                break;
            place = segment.marker == SOS ? endOfScan(m_bytes, segment.end) : segment.end;
            if (!readSegment(segment, place))
                return false;
        }
        return m_hasMeans;
    }

    void hand(RowSink& sink) const
    {
        const std::uint32_t wide = (m_wide + 7) / 8;
        const std::uint32_t high = (m_high + 7) / 8;
        sink.begin(wide, high, PixelLayout::Opaque);
        std::vector<std::uint8_t> row(std::size_t { wide } * 4, 255);
        for (std::uint32_t y = 0; y < high; ++y) {
            for (std::size_t index = 0; index < m_components.size(); ++index)
                setSamples(index, y, row);
            for (std::size_t at = 0; at < row.size(); at += 4)
                finish(&row[at]);
            sink.row(row.data());
        }
    }

private:
    bool readSegment(const JPEGSegment& segment, std::size_t end)
    {
        const std::string_view body = segment.body(m_bytes);
        switch (segment.marker) {
        case SOF2:
            return readFrame(Bytes(body));
        case DHT:
            readHuffmanTables(body);
            return true;
        case DQT:
            readQuantizationTables(Bytes(body));
            return true;
        case DRI:
            m_restartInterval = Bytes(body).be16(0);
            return true;
        case APP14:
            m_isRGB = body.starts_with("Adobe") && body.size() >= 12 && body[11] == 0;
            return true;
        case SOS:
            return !m_components.empty()
                && readScan(Bytes(body), m_bytes.run(segment.end, end - segment.end));
        default:
            return true;
        }
    }

    bool readFrame(const Bytes& body)
    {
        m_high = body.be16(1);
        m_wide = body.be16(3);
        const std::uint32_t count = body.u8(5);
        if (body.u8(0) != 8 || !limits::allows(m_wide, m_high) || (count != 1 && count != 3)
            || !m_components.empty())
            return false;
        for (std::uint32_t index = 0; index < count; ++index) {
            const std::size_t at = 6 + std::size_t { index } * 3;
            Component component;
            component.name = body.u8(at);
            component.across = count == 1 ? 1 : body.u8(at + 1) >> 4;
            component.down = count == 1 ? 1 : body.u8(at + 1) & 15;
            component.quantization = body.u8(at + 2) & 3;
            if (component.across < 1 || component.across > 4 || component.down < 1 || component.down > 4)
                return false;
            m_across = std::max(m_across, component.across);
            m_down = std::max(m_down, component.down);
            m_components.push_back(std::move(component));
        }
        m_unitsWide = (m_wide + 8 * m_across - 1) / (8 * m_across);
        m_unitsHigh = (m_high + 8 * m_down - 1) / (8 * m_down);
        for (Component& component : m_components) {
            component.blocksWide = ((m_wide * component.across + m_across - 1) / m_across + 7) / 8;
            component.blocksHigh = ((m_high * component.down + m_down - 1) / m_down + 7) / 8;
            component.stride = std::size_t { m_unitsWide } * component.across;
            component.means.resize(component.stride * m_unitsHigh * component.down);
        }
        return true;
    }

    void readHuffmanTables(std::string_view body)
    {
        while (body.size() > 17) {
            const std::uint32_t place = static_cast<std::uint8_t>(body[0]);
            std::size_t count = 0;
            for (const char length : body.substr(1, 16))
                count += static_cast<std::uint8_t>(length);
            if (place < m_tables.size()) // Others are those of the other coefficients.
                m_tables[place].emplace(body.substr(1, 16), body.substr(17, count));
            body.remove_prefix(std::min(17 + count, body.size()));
        }
    }

    // Only the first entry of each counts here.
    void readQuantizationTables(const Bytes& body)
    {
        for (std::size_t at = 0; at < body.size();) {
            const bool isWide = body.u8(at) >> 4 != 0;
            m_quantization[body.u8(at) & 3] = static_cast<int>(isWide ? body.be16(at + 1) : body.u8(at + 1));
            at += 1 + 64 * (isWide ? 2U : 1U);
        }
    }

    struct Scanned {
        Component* component;
        const HuffmanTable* table; // Null in a refining scan.
        std::int32_t last = 0;
    };

    bool readScan(const Bytes& body, std::string_view data)
    {
        const std::uint32_t count = body.u8(0);
        const std::size_t behind = 1 + std::size_t { count } * 2;
        if (body.u8(behind) != 0)
            return true; // Of other coefficients.
        const std::uint32_t lackedBefore = body.u8(behind + 2) >> 4;
        m_lacking = body.u8(behind + 2) & 15;
        m_isRefining = lackedBefore != 0;
        std::vector<Scanned> scanned;
        for (std::uint32_t index = 0; index < count; ++index) {
            const std::uint32_t name = body.u8(1 + std::size_t { index } * 2);
            const std::uint32_t table = body.u8(2 + std::size_t { index } * 2) >> 4;
            const auto found = std::find_if(m_components.begin(), m_components.end(),
                [&](const Component& component) { return component.name == name; });
            const bool hasTable = table < m_tables.size() && m_tables[table];
            if (found == m_components.end() || (!m_isRefining && !hasTable) || m_lacking > 13)
                return false;
            scanned.push_back({ &*found, hasTable ? &*m_tables[table] : nullptr });
        }
        BitReader bits(data);
        if (scanned.size() == 1)
            readBlocks(scanned.front(), bits);
        else if (!scanned.empty())
            readUnits(scanned, bits);
        m_hasMeans = true;
        return true;
    }

    void readBlocks(Scanned& scanned, BitReader& bits)
    {
        std::uint32_t done = 0;
        for (std::size_t y = 0; y < scanned.component->blocksHigh; ++y)
            for (std::size_t x = 0; x < scanned.component->blocksWide; ++x) {
                restartIfDue(done++, { &scanned, 1 }, bits);
                readBlock(scanned, y * scanned.component->stride + x, bits);
            }
    }

    void readUnits(std::vector<Scanned>& all, BitReader& bits)
    {
        std::uint32_t done = 0;
        for (std::size_t unitY = 0; unitY < m_unitsHigh; ++unitY)
            for (std::size_t unitX = 0; unitX < m_unitsWide; ++unitX) {
                restartIfDue(done++, all, bits);
                for (Scanned& scanned : all)
                    readUnit(scanned, unitX, unitY, bits);
            }
    }

    void readUnit(Scanned& scanned, std::size_t unitX, std::size_t unitY, BitReader& bits) const
    {
        const Component& component = *scanned.component;
        for (std::size_t y = 0; y < component.down; ++y)
            for (std::size_t x = 0; x < component.across; ++x)
                readBlock(scanned,
                    (unitY * component.down + y) * component.stride + unitX * component.across + x, bits);
    }

    void restartIfDue(std::uint32_t done, std::span<Scanned> all, BitReader& bits) const
    {
        if (m_restartInterval == 0 || done == 0 || done % m_restartInterval != 0)
            return;
        bits.restart();
        for (Scanned& scanned : all)
            scanned.last = 0;
    }

    void readBlock(Scanned& scanned, std::size_t block, BitReader& bits) const
    {
        std::int16_t& mean = scanned.component->means[block];
        if (m_isRefining) {
            mean = static_cast<std::int16_t>(mean | static_cast<std::int32_t>(bits.take(1)) << m_lacking);
            return;
        }
        const std::uint32_t size = std::min(scanned.table->decode(bits), 15U);
        if (size > 0) {
            const auto value = static_cast<std::int32_t>(bits.take(size));
            scanned.last += value < 1 << (size - 1) ? value - (1 << size) + 1 : value;
        }
        scanned.last = static_cast<std::int16_t>(scanned.last); // Of sound files it never is more.
        mean = static_cast<std::int16_t>(static_cast<std::uint32_t>(scanned.last) << m_lacking);
    }

    void setSamples(std::size_t index, std::uint32_t y, std::vector<std::uint8_t>& row) const
    {
        const Component& component = m_components[index];
        const std::int32_t factor = m_quantization[component.quantization];
        const std::int16_t* means = component.means.data() + y * component.down / m_down * component.stride;
        std::uint32_t part = 0; // Of the mean that has been passed.
        for (std::size_t at = index; at < row.size(); at += 4) {
            row[at] = static_cast<std::uint8_t>(std::clamp(((*means * factor + 4) >> 3) + 128, 0, 255));
            part += component.across;
            if (part >= m_across) {
                part -= m_across;
                ++means;
            }
        }
    }

    // ITU-T T.871, 7.
    void finish(std::uint8_t* pixel) const
    {
        if (m_components.size() == 1) {
            pixel[1] = pixel[2] = pixel[0];
        } else if (!m_isRGB) {
            constexpr int half = 1 << 15;
            const int y = pixel[0];
            const int cb = pixel[1] - 128;
            const int cr = pixel[2] - 128;
            const auto cut = [](int value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); };
            pixel[0] = cut(y + ((91881 * cr + half) >> 16));
            pixel[1] = cut(y + ((-22554 * cb - 46802 * cr + half) >> 16));
            pixel[2] = cut(y + ((116130 * cb + half) >> 16));
        }
    }

    Bytes m_bytes;
    std::uint32_t m_wide = 0;
    std::uint32_t m_high = 0;
    std::uint32_t m_across = 1; // The largest sampling factors.
    std::uint32_t m_down = 1;
    std::uint32_t m_unitsWide = 0;
    std::uint32_t m_unitsHigh = 0;
    std::uint32_t m_restartInterval = 0;
    std::uint32_t m_lacking = 0; // Bits that the scan leaves out.
    bool m_isRefining = false;
    bool m_isRGB = false;
    bool m_hasMeans = false;
    std::vector<Component> m_components;
    std::array<std::optional<HuffmanTable>, 4> m_tables;
    std::array<std::int32_t, 4> m_quantization {};
};

} // namespace

bool handMeansOfJPEG(const Bytes& bytes, RowSink& sink)
{
    Means means(bytes);
    if (!means.read())
        return false;
    means.hand(sink);
    return true;
}

} // namespace caddis::image
