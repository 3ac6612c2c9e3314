// Photoshop's files (PSD, and PSB for large ones): the merged picture that stands behind the layers. 1 to 32
// bits, bitmap, grey, duotone, palette, RGB, CMYK, multichannel and Lab; plain or in runs.

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Readers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <vector>

namespace caddis::image {

namespace {

enum Mode : std::uint32_t {
    Bitmap = 0,
    Grey = 1,
    Indexed = 2,
    RGB = 3,
    CMYK = 4,
    Multichannel = 7,
    Duotone = 8,
    Lab = 9
};

constexpr std::size_t HeaderSize = 26;
constexpr std::uint32_t LongestSide = 300'000;

enum Resource : std::uint32_t { ResolutionInfo = 0x3ED, ThumbnailRGB = 0x40C, ICCProfile = 0x40F };

// CIE 1976 L*a*b* (each component a byte) to sRGB: IEC 61966-2-1, with the white of D50 taken for that of
// D65.
void convertFromLab(std::uint8_t* pixel)
{
    const double f = (pixel[0] * 100.0 / 255 + 16) / 116;
    const auto light = [](double t) { return t > 6.0 / 29 ? t * t * t : 3 * 36.0 / 841 * (t - 4.0 / 29); };
    const double x = 0.9505 * light(f + (pixel[1] - 128) / 500.0);
    const double y = light(f);
    const double z = 1.0891 * light(f - (pixel[2] - 128) / 200.0);
    const double linear[] = { 3.2406 * x - 1.5372 * y - 0.4986 * z, -0.9689 * x + 1.8758 * y + 0.0415 * z,
        0.0557 * x - 0.2040 * y + 1.0570 * z };
    for (std::size_t component = 0; component < 3; ++component) {
        const double value = std::clamp(linear[component], 0.0, 1.0);
        const double shown = value <= 0.0031308 ? 12.92 * value : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
        pixel[component] = static_cast<std::uint8_t>(std::lrint(shown * 255));
    }
}

class PSDReader final : public Reader {
public:
    explicit PSDReader(const Data& data)
        : m_data(data)
        , m_bytes(m_data)
        , m_isLarge(m_bytes.be16(4) == 2)
        , m_channels(m_bytes.be16(12))
        , m_high(m_bytes.be32(14))
        , m_wide(m_bytes.be32(18))
        , m_depth(m_bytes.be16(22))
        , m_mode(m_bytes.be16(24))
    {
        const bool hasDepth
            = m_depth == 8 || m_depth == 16 || m_depth == 32 || (m_depth == 1 && m_mode == Bitmap);
        if (m_channels == 0 || m_channels > 56 || !hasDepth || m_wide == 0 || m_high == 0
            || std::max(m_wide, m_high) > LongestSide)
            throw Broken();
        m_colours = HeaderSize + 4;
        m_resources = m_colours + m_bytes.be32(HeaderSize) + 4;
        const std::size_t layers = m_resources + m_bytes.be32(m_resources - 4);
        m_pixels = layers
            + (m_isLarge ? 8 + (std::size_t { m_bytes.be32(layers) } << 32 | m_bytes.be32(layers + 4))
                         : 4 + std::size_t { m_bytes.be32(layers) });
        const std::uint32_t colours = m_mode == CMYK ? 4 : m_mode == RGB || m_mode == Lab ? 3 : 1;
        if (!m_bytes.has(m_pixels, 2) || m_channels < colours)
            throw Broken();
        m_used = std::min<std::uint32_t>(
            m_channels, m_mode == Multichannel ? 3 : colours + (hasAlpha() ? 1 : 0));
        m_isRuns = m_bytes.be16(m_pixels) == 1;
        if (m_bytes.be16(m_pixels) > 1)
            throw Broken();
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        ImageInfo info;
        info.pixelsWide = m_wide;
        info.pixelsHigh = m_high;
        info.depth = m_depth;
        info.isFloat = m_depth == 32;
        info.isIndexed = m_mode == Indexed;
        info.hasAlpha = hasAlpha();
        info.colorModel = m_mode == CMYK                                   ? ColorModel::CMYK
            : m_mode == Lab                                                ? ColorModel::Lab
            : m_mode == RGB || m_mode == Indexed || m_mode == Multichannel ? ColorModel::RGB
                                                                           : ColorModel::Gray;
        if (const auto resolution = resource(ResolutionInfo); resolution && resolution->length >= 16) {
            info.dpiWidth = m_bytes.be32(resolution->location) / 65536.0;
            info.dpiHeight = m_bytes.be32(resolution->location + 8) / 65536.0;
        }
        return info;
    }

    void decode(std::size_t, Target, RowSink& sink) override
    {
        if (!limits::allows(m_wide, m_high))
            throw Broken();
        const auto rows = m_isRuns ? placesOfRows() : std::vector<Range>();
        sink.begin(m_wide, m_high,
            m_mode == CMYK   ? PixelLayout::InvertedCMYK
                : hasAlpha() ? PixelLayout::Straight
                             : PixelLayout::Opaque);
        std::vector<std::uint8_t> packed(bytesPerRow());
        std::vector<std::uint8_t> row(std::size_t { m_wide } * 4);
        for (std::uint32_t y = 0; y < m_high; ++y) {
            std::fill(row.begin(), row.end(), std::uint8_t { 255 });
            for (std::uint32_t channel = 0; channel < m_used; ++channel) {
                readRow(rows, channel, y, packed);
                for (std::size_t x = 0; x < m_wide; ++x)
                    row[x * 4 + placeOf(channel)] = sampleAt(packed, x);
            }
            finish(row);
            sink.row(row.data());
        }
    }

    std::unique_ptr<Reader> embedded(std::size_t) override
    {
        constexpr std::size_t head = 28;
        const auto thumbnail = resource(ThumbnailRGB);
        const bool isJPEG = thumbnail && thumbnail->length > head && m_bytes.be32(thumbnail->location) == 1;
        return isJPEG ? openJPEG(m_data.slice({ thumbnail->location + head, thumbnail->length - head }))
                      : nullptr;
    }

    std::optional<Data> profile(std::size_t) override
    {
        const auto found = resource(ICCProfile);
        const bool isOfPixels = m_mode == RGB || m_mode == CMYK || m_mode == Grey;
        return found && isOfPixels ? std::optional(m_data.slice(*found)) : std::nullopt;
    }

private:
    bool hasAlpha() const
    {
        return (m_mode == RGB && m_channels >= 4)
            || ((m_mode == Grey || m_mode == Duotone) && m_channels >= 2);
    }
    std::size_t bytesPerRow() const { return (std::size_t { m_wide } * m_depth + 7) / 8; }
    // Where a channel stands in a pixel.
    std::size_t placeOf(std::uint32_t channel) const { return m_used == 2 && channel == 1 ? 3 : channel; }

    // Image resources: "8BIM", a number, a padded Pascal string, a length, bytes padded to an even count.
    std::optional<Range> resource(Resource wanted) const
    {
        const std::size_t end = m_resources + m_bytes.be32(m_resources - 4);
        for (std::size_t place = m_resources; place + 12 <= end && m_bytes.isAt(place, "8BIM");) {
            const std::size_t lengthAt = place + 6 + (std::size_t { m_bytes.u8(place + 6) } + 2) / 2 * 2;
            const Range range { lengthAt + 4, m_bytes.be32(lengthAt) };
            if (!m_bytes.has(range.location, range.length))
                break;
            if (m_bytes.be16(place + 4) == wanted)
                return range;
            place = range.location + (range.length + 1) / 2 * 2;
        }
        return std::nullopt;
    }

    // The packed length of each row stands before the rows, channel after channel.
    std::vector<Range> placesOfRows() const
    {
        const std::size_t count = std::size_t { m_channels } * m_high;
        const std::size_t size = m_isLarge ? 4 : 2;
        if (!m_bytes.has(m_pixels + 2, count * size))
            throw Broken();
        std::vector<Range> rows;
        rows.reserve(count);
        std::size_t place = m_pixels + 2 + count * size;
        for (std::size_t index = 0; index < count; ++index) {
            const std::size_t at = m_pixels + 2 + index * size;
            rows.push_back({ place, m_isLarge ? m_bytes.be32(at) : m_bytes.be16(at) });
            place += rows.back().length;
        }
        return rows;
    }

    void readRow(const std::vector<Range>& rows, std::uint32_t channel, std::uint32_t y,
        std::vector<std::uint8_t>& out) const
    {
        const std::size_t index = std::size_t { channel } * m_high + y;
        if (m_isRuns) {
            unpack(rows[index], out);
            return;
        }
        const std::size_t place = m_pixels + 2 + index * bytesPerRow();
        if (!m_bytes.has(place, out.size()))
            throw Broken();
        std::copy_n(m_bytes.at(place), out.size(), out.begin());
    }

    // PackBits: a count of bytes as they are, or of copies of one.
    void unpack(Range range, std::vector<std::uint8_t>& out) const
    {
        const Bytes bytes(m_bytes.run(range.location, range.length));
        std::size_t at = 0;
        for (std::size_t place = 0; place < bytes.size() && at < out.size();) {
            const std::uint32_t packet = bytes.u8(place++);
            const bool isRun = packet > 128;
            const std::size_t wanted = packet == 128 ? 0 : isRun ? 257 - packet : packet + 1;
            const std::size_t count = std::min(wanted, out.size() - at);
            for (std::size_t index = 0; index < count; ++index)
                out[at++] = static_cast<std::uint8_t>(bytes.u8(place + (isRun ? 0 : index)));
            place += isRun ? 1 : wanted;
        }
        std::fill(out.begin() + static_cast<std::ptrdiff_t>(at), out.end(), std::uint8_t { 0 });
    }

    std::uint8_t sampleAt(const std::vector<std::uint8_t>& row, std::size_t x) const
    {
        if (m_depth == 1)
            return row[x / 8] >> (7 - x % 8) & 1 ? 0 : 255;
        if (m_depth < 32)
            return row[x * m_depth / 8];
        std::uint32_t bits = 0;
        for (std::size_t index = 0; index < 4; ++index)
            bits = bits << 8 | row[x * 4 + index];
        const auto value = std::bit_cast<float>(bits);
        const double shown = value > 0 ? std::pow(std::min(value, 1.0F), 1 / 2.2) : 0; // They are linear.
        return static_cast<std::uint8_t>(std::lrint(shown * 255));
    }

    void finish(std::vector<std::uint8_t>& row) const
    {
        for (std::size_t at = 0; at < row.size(); at += 4) {
            std::uint8_t* pixel = &row[at];
            if (m_mode == Indexed) {
                const std::size_t index = pixel[0];
                for (std::size_t component = 0; component < 3; ++component)
                    pixel[component]
                        = static_cast<std::uint8_t>(m_bytes.u8(m_colours + component * 256 + index));
            } else if (m_mode == Lab) {
                convertFromLab(pixel);
            } else if (m_used <= 2) {
                pixel[1] = pixel[2] = pixel[0];
            }
        }
    }

    Data m_data;
    Bytes m_bytes;
    bool m_isLarge;
    std::uint32_t m_channels;
    std::uint32_t m_high;
    std::uint32_t m_wide;
    std::uint32_t m_depth;
    std::uint32_t m_mode;
    std::uint32_t m_used = 0; // Channels that show.
    bool m_isRuns = false;
    std::size_t m_colours = 0; // Places of the parts.
    std::size_t m_resources = 0;
    std::size_t m_pixels = 0;
};

} // namespace

std::unique_ptr<Reader> openPSD(const Data& data) { return std::make_unique<PSDReader>(data); }

} // namespace caddis::image
