#include "PlainTIFF.h"

#include <map>
#include <vector>

namespace caddis::tool {

namespace {

constexpr std::uint32_t LargestSide = 16'384;

enum Tag : std::uint16_t {
    Width = 256,
    Height = 257,
    BitsPerSample = 258,
    Compression = 259,
    Photometric = 262,
    StripOffsets = 273,
    SamplesPerPixel = 277,
    RowsPerStrip = 278,
    PlanarConfiguration = 284,
};

class Reader {
public:
    explicit Reader(const Data& file)
        : m_bytes(file.span())
    {
    }

    // Numbers outside the file are 0, which no field that matters may be.
    std::uint32_t number(std::size_t offset, std::size_t size) const
    {
        std::uint32_t value = 0;
        for (std::size_t index = size; index-- > 0;)
            value = value << 8 | (offset + index < m_bytes.size() ? m_bytes[offset + index] : 0U);
        return value;
    }

    void readFields()
    {
        const std::size_t directory = number(4, 4);
        const std::uint32_t count = number(directory, 2);
        for (std::size_t index = 0; index < count; ++index) {
            const std::size_t entry = directory + 2 + index * 12;
            m_entries.try_emplace(static_cast<std::uint16_t>(number(entry, 2)), entry);
        }
    }

    std::uint32_t field(Tag tag, std::size_t index = 0, std::uint32_t missing = 0) const
    {
        const auto entry = m_entries.find(tag);
        if (entry == m_entries.end() || index >= number(entry->second + 4, 4))
            return missing;
        const std::size_t size = number(entry->second + 2, 2) == 3 ? 2 : 4; // SHORT or LONG
        const bool standsInEntry = size * number(entry->second + 4, 4) <= 4;
        const std::size_t values = standsInEntry ? entry->second + 8 : number(entry->second + 8, 4);
        return number(values + index * size, size);
    }

    std::span<const std::uint8_t> bytes(std::size_t offset, std::size_t count) const
    {
        if (offset > m_bytes.size() || count > m_bytes.size() - offset)
            return {};
        return m_bytes.subspan(offset, count);
    }

private:
    std::span<const std::uint8_t> m_bytes;
    std::map<std::uint16_t, std::size_t> m_entries;
};

bool isPlain(const Reader& reader)
{
    const std::uint32_t samples = reader.field(SamplesPerPixel);
    return reader.number(0, 4) == 0x002A'4949 && reader.field(Compression, 0, 1) == 1
        && reader.field(Photometric) == 2 && (samples == 3 || samples == 4)
        && reader.field(BitsPerSample) == 8 && reader.field(PlanarConfiguration, 0, 1) == 1
        && reader.field(Width) > 0 && reader.field(Width) <= LargestSide && reader.field(Height) > 0
        && reader.field(Height) <= LargestSide;
}

} // namespace

std::optional<Bitmap> bitmapOfPlainTIFF(const Data& file)
{
    Reader reader(file);
    reader.readFields();
    if (!isPlain(reader))
        return std::nullopt;
    Bitmap bitmap { reader.field(Width), reader.field(Height), reader.field(SamplesPerPixel) == 4, {} };
    const std::uint32_t rowsPerStrip = reader.field(RowsPerStrip, 0, bitmap.pixelsHigh);
    const std::size_t samples = reader.field(SamplesPerPixel);
    const std::size_t rowBytes = bitmap.pixelsWide * samples;
    if (rowsPerStrip == 0 || rowBytes * bitmap.pixelsHigh > file.size())
        return std::nullopt;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(bitmap.bytesPerRow() * bitmap.pixelsHigh);
    for (std::uint32_t y = 0; y < bitmap.pixelsHigh; ++y) {
        const std::size_t strip = reader.field(StripOffsets, y / rowsPerStrip);
        const auto row = reader.bytes(strip + y % rowsPerStrip * rowBytes, rowBytes);
        if (strip == 0 || row.empty())
            return std::nullopt;
        for (std::size_t x = 0; x < rowBytes; x += samples) {
            pixels.insert(pixels.end(), { row[x], row[x + 1], row[x + 2] });
            pixels.push_back(samples == 4 ? row[x + 3] : std::uint8_t(255));
        }
    }
    bitmap.pixels = Data::adopt(std::move(pixels));
    return bitmap;
}

} // namespace caddis::tool
