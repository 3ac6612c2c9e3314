#include "platform/image/engine/Writers.h"

namespace caddis::image {

namespace {

void appendNumber(std::string& out, std::uint32_t number, int bytes)
{
    for (int index = 0; index < bytes; ++index)
        out += static_cast<char>(number >> (8 * index) & 0xFF);
}

} // namespace

std::optional<Data> writeImage(const Bitmap& bitmap, const WriteRequest& request)
{
    if (bitmap.pixelsWide == 0 || bitmap.pixelsHigh == 0)
        return std::nullopt;
    switch (request.type) {
    case BitmapImageFileType::TIFF:
        return writeTIFF(bitmap, request);
    case BitmapImageFileType::BMP:
        return writeBMP(bitmap, request);
    case BitmapImageFileType::JPEG:
        return writeJPEG(bitmap, request);
    case BitmapImageFileType::PNG:
        return writePNG(bitmap, request);
    case BitmapImageFileType::GIF:
        return writeGIF(bitmap, request);
    case BitmapImageFileType::JPEG2000:
        return std::nullopt;
    }
    return std::nullopt;
}

void opaqueRow(const Bitmap& bitmap, std::size_t y, std::uint8_t* out)
{
    const std::uint8_t* pixel = bitmap.row(y);
    for (std::uint32_t x = 0; x < bitmap.pixelsWide; ++x, pixel += 4)
        for (std::size_t component = 0; component < 3; ++component)
            *out++ = static_cast<std::uint8_t>(pixel[component] + 255 - pixel[3]);
}

// BITMAPFILEHEADER and BITMAPINFOHEADER, then the rows from the bottom, each padded to four bytes.
std::optional<Data> writeBMP(const Bitmap& bitmap, const WriteRequest&)
{
    constexpr std::uint32_t headers = 54;
    const std::size_t bytesPerRow = (std::size_t { bitmap.pixelsWide } * 3 + 3) / 4 * 4;
    const std::size_t size = headers + bytesPerRow * bitmap.pixelsHigh;
    if (size > INT32_MAX)
        return std::nullopt;
    std::string file = "BM";
    for (const std::size_t number : { size, std::size_t { 0 }, std::size_t { headers }, std::size_t { 40 },
             std::size_t { bitmap.pixelsWide }, std::size_t { bitmap.pixelsHigh } })
        appendNumber(file, static_cast<std::uint32_t>(number), 4);
    appendNumber(file, 1, 2);
    appendNumber(file, 24, 2);
    file.resize(headers);
    std::vector<std::uint8_t> row(bytesPerRow);
    for (std::size_t y = bitmap.pixelsHigh; y-- > 0;) {
        opaqueRow(bitmap, y, row.data());
        for (std::size_t x = 0; x < bitmap.pixelsWide; ++x)
            std::swap(row[x * 3], row[x * 3 + 2]);
        file.append(row.begin(), row.end());
    }
    return Data::adopt(std::move(file));
}

} // namespace caddis::image
