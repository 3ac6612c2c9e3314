#include "PNG.h"

#include <string>
#include <zlib.h>

namespace caddis::tool {

namespace {

void appendNumber(std::string& out, std::uint32_t number)
{
    for (const unsigned shift : { 24U, 16U, 8U, 0U })
        out += static_cast<char>(number >> shift & 0xFF);
}

// Length, kind, bytes, and the CRC of the latter two.
void appendChunk(std::string& out, const std::string& kind, const std::string& bytes)
{
    appendNumber(out, static_cast<std::uint32_t>(bytes.size()));
    const std::string body = kind + bytes;
    out += body;
    const auto* const first = reinterpret_cast<const Bytef*>(body.data());
    appendNumber(out, static_cast<std::uint32_t>(crc32(0, first, static_cast<uInt>(body.size()))));
}

// Each row behind the byte 0: as it is, without a prediction from its neighbours.
std::string rowsOf(const PDFRaster& raster)
{
    std::string rows;
    rows.reserve((std::size_t { 3 } * raster.pixelsWide + 1) * raster.pixelsHigh);
    const std::uint8_t* pixel = raster.pixels.bytes();
    for (std::uint32_t row = 0; row < raster.pixelsHigh; ++row) {
        rows += '\0';
        for (std::uint32_t column = 0; column < raster.pixelsWide; ++column, pixel += 4)
            rows.append(reinterpret_cast<const char*>(pixel), 3);
    }
    return rows;
}

std::string deflated(const std::string& bytes)
{
    uLongf size = compressBound(bytes.size());
    std::string result(size, '\0');
    compress(reinterpret_cast<Bytef*>(result.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
        bytes.size());
    result.resize(size);
    return result;
}

} // namespace

Data pngOf(const PDFRaster& raster)
{
    std::string header;
    appendNumber(header, raster.pixelsWide);
    appendNumber(header, raster.pixelsHigh);
    header.append("\x08\x02\0\0\0", 5); // 8 bits, colour, the only methods there are, not interlaced.
    std::string file = "\x89PNG\r\n\x1A\n";
    appendChunk(file, "IHDR", header);
    appendChunk(file, "IDAT", deflated(rowsOf(raster)));
    appendChunk(file, "IEND", "");
    return Data::adopt(std::move(file));
}

} // namespace caddis::tool
