// Portable bitmaps, greymaps, pixmaps and arbitrary maps (P1 to P7), as text or bytes, to 16 bits a sample,
// and the floating-point maps PF and Pf. Netpbm's manual pages pbm(5), pgm(5), ppm(5), pam(5); "PFM".

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Readers.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <vector>

namespace caddis::image {

namespace {

bool isBlank(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

class PNMReader final : public Reader {
public:
    explicit PNMReader(const Data& data)
        : m_bytes(data.chars())
        , m_data(data)
        , m_kind(m_bytes.at(1))
    {
        m_isText = m_kind >= '1' && m_kind <= '3';
        m_isFloat = m_kind == 'F' || m_kind == 'f';
        if (m_kind == '7')
            readArbitraryHeader();
        else
            readHeader();
        if (m_samples < 1 || m_samples > 4 || !(m_most > 0) || m_most > 65535)
            throw Broken();
        m_hasAlpha = m_samples % 2 == 0;
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        ImageInfo info;
        info.pixelsWide = m_wide;
        info.pixelsHigh = m_high;
        info.hasAlpha = m_hasAlpha;
        info.isFloat = m_isFloat;
        info.depth = m_isFloat ? 32 : m_isBits ? 1 : m_most > 255 ? 16 : 8;
        info.colorModel = m_samples >= 3 ? ColorModel::RGB : ColorModel::Gray;
        return info;
    }

    void decode(std::size_t, Target, RowSink& sink) override
    {
        if (!limits::allows(m_wide, m_high))
            throw Broken();
        sink.begin(m_wide, m_high, m_hasAlpha ? PixelLayout::Straight : PixelLayout::Opaque);
        std::size_t place = m_place;
        std::vector<std::uint8_t> samples(std::size_t { m_wide } * m_samples);
        std::vector<std::uint8_t> row(std::size_t { m_wide } * 4);
        for (std::uint32_t y = 0; y < m_high; ++y) {
            if (m_isText)
                readText(place, samples);
            else
                readBytes(y, samples);
            setPixels(samples, row);
            sink.row(row.data());
        }
    }

private:
    // The next word of the header, or of pixels written as text; comments run to the line's end.
    std::string_view word(std::size_t& place) const
    {
        while (place < m_bytes.size() && (isBlank(m_bytes[place]) || m_bytes[place] == '#'))
            place = m_bytes[place] == '#' ? std::min(m_bytes.find('\n', place), m_bytes.size()) : place + 1;
        const std::size_t start = place;
        while (place < m_bytes.size() && !isBlank(m_bytes[place]))
            ++place;
        return m_bytes.substr(start, place - start);
    }
    template <typename Number> static Number number(std::string_view text)
    {
        Number value {};
        if (std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc())
            throw Broken();
        return value;
    }

    void readHeader()
    {
        m_wide = number<std::uint32_t>(word(m_place));
        m_high = number<std::uint32_t>(word(m_place));
        m_isBits = m_kind == '1' || m_kind == '4';
        m_samples = m_kind == '3' || m_kind == '6' || m_kind == 'F' ? 3 : 1;
        if (m_isFloat)
            m_isLittle = number<double>(word(m_place)) < 0;
        else if (!m_isBits)
            m_most = number<std::uint32_t>(word(m_place));
        ++m_place; // One blank stands before the pixels.
    }

    void readArbitraryHeader()
    {
        for (std::string_view name = word(m_place); name != "ENDHDR"; name = word(m_place)) {
            if (name.empty())
                throw Broken();
            const std::string_view value = word(m_place);
            if (name == "WIDTH")
                m_wide = number<std::uint32_t>(value);
            else if (name == "HEIGHT")
                m_high = number<std::uint32_t>(value);
            else if (name == "DEPTH")
                m_samples = number<std::uint32_t>(value);
            else if (name == "MAXVAL")
                m_most = number<std::uint32_t>(value);
        }
        ++m_place;
    }

    std::uint8_t shade(std::uint32_t value) const
    {
        return static_cast<std::uint8_t>((std::min(value, m_most) * 255 + m_most / 2) / m_most);
    }

    // In a bitmap 1 is black, and its digits need no blanks between them.
    void readText(std::size_t& place, std::vector<std::uint8_t>& samples) const
    {
        for (std::uint8_t& sample : samples) {
            if (!m_isBits) {
                sample = shade(number<std::uint32_t>(word(place)));
                continue;
            }
            while (place < m_bytes.size() && m_bytes[place] != '0' && m_bytes[place] != '1')
                place
                    = m_bytes[place] == '#' ? std::min(m_bytes.find('\n', place), m_bytes.size()) : place + 1;
            if (place >= m_bytes.size())
                throw Broken();
            sample = m_bytes[place++] == '1' ? 0 : 255;
        }
    }

    void readBytes(std::uint32_t y, std::vector<std::uint8_t>& samples) const
    {
        const std::size_t bits = m_isBits ? 1 : m_isFloat ? 32 : m_most > 255 ? 16 : 8;
        const std::size_t bytesPerRow = (samples.size() * bits + 7) / 8;
        const std::size_t row = m_isFloat ? m_high - 1 - y : y; // Floating-point maps start at the bottom.
        const std::size_t start = m_place + row * bytesPerRow;
        const Bytes bytes(m_data);
        if (!bytes.has(start, bytesPerRow))
            throw Broken();
        for (std::size_t index = 0; index < samples.size(); ++index) {
            if (m_isBits)
                samples[index] = bytes.u8(start + index / 8) >> (7 - index % 8) & 1 ? 0 : 255;
            else if (m_isFloat)
                samples[index]
                    = light(m_isLittle ? bytes.le32(start + index * 4) : bytes.be32(start + index * 4));
            else
                samples[index] = shade(bits == 16 ? bytes.be16(start + index * 2) : bytes.u8(start + index));
        }
    }

    static std::uint8_t light(std::uint32_t bits)
    {
        const auto value = std::bit_cast<float>(bits);
        return static_cast<std::uint8_t>(value > 0 ? std::lrint(std::min(value, 1.0F) * 255) : 0);
    }

    void setPixels(const std::vector<std::uint8_t>& samples, std::vector<std::uint8_t>& row) const
    {
        const std::uint8_t* sample = samples.data();
        for (std::size_t at = 0; at < row.size(); at += 4, sample += m_samples) {
            for (std::size_t component = 0; component < 3; ++component)
                row[at + component] = sample[m_samples >= 3 ? component : 0];
            row[at + 3] = m_hasAlpha ? sample[m_samples - 1] : 255;
        }
    }

    std::string_view m_bytes;
    Data m_data;
    char m_kind;
    std::size_t m_place = 2; // Behind the header.
    std::uint32_t m_wide = 0;
    std::uint32_t m_high = 0;
    std::uint32_t m_samples = 1; // Of a pixel.
    std::uint32_t m_most = 1;
    bool m_isBits = false;
    bool m_isText = false;
    bool m_isFloat = false;
    bool m_isLittle = false;
    bool m_hasAlpha = false;
};

} // namespace

std::unique_ptr<Reader> openPNM(const Data& data) { return std::make_unique<PNMReader>(data); }

} // namespace caddis::image
