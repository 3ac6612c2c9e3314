#include "platform/image/engine/Writers.h"

#include <png.h>
#include <stdexcept>

namespace caddis::image {

namespace {

// Of photographs the files are as small as at zlib's usual level, at a third of the time.
constexpr int CompressionLevel = 3;

// Errors leave libpng as exceptions, as in PNGReader.cpp.
struct Encoder {
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::string file;

    Encoder() = default;
    ~Encoder() { png_destroy_write_struct(&png, &info); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void begin(const Bitmap& bitmap)
    {
        png = png_create_write_struct(
            PNG_LIBPNG_VER_STRING, this,
            [](png_structp, png_const_charp) { throw std::runtime_error("libpng"); },
            [](png_structp, png_const_charp) {});
        info = png_create_info_struct(png);
        png_set_write_fn(
            png, this,
            [](png_structp writer, png_bytep bytes, std::size_t count) {
                static_cast<Encoder*>(png_get_io_ptr(writer))
                    ->file.append(reinterpret_cast<const char*>(bytes), count);
            },
            [](png_structp) {});
        png_set_compression_level(png, CompressionLevel);
        png_set_user_limits(png, 0x7FFFFFFF, 0x7FFFFFFF);
        png_set_IHDR(png, info, bitmap.pixelsWide, bitmap.pixelsHigh, 8,
            bitmap.hasAlpha ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
            PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
    }
};

void straightRow(const std::uint8_t* pixel, std::uint32_t count, std::uint8_t* out)
{
    for (; count > 0; --count, pixel += 4) {
        const unsigned alpha = pixel[3];
        for (std::size_t component = 0; component < 3; ++component)
            *out++ = static_cast<std::uint8_t>(alpha ? (pixel[component] * 255U + alpha / 2) / alpha : 0);
        *out++ = pixel[3];
    }
}

} // namespace

std::optional<Data> writePNG(const Bitmap& bitmap, const WriteRequest&)
{
    try {
        Encoder encoder;
        encoder.begin(bitmap);
        std::vector<std::uint8_t> row(bitmap.bytesPerRow());
        for (std::uint32_t y = 0; y < bitmap.pixelsHigh; ++y) {
            if (bitmap.hasAlpha)
                straightRow(bitmap.row(y), bitmap.pixelsWide, row.data());
            else
                opaqueRow(bitmap, y, row.data());
            png_write_row(encoder.png, row.data());
        }
        png_write_end(encoder.png, encoder.info);
        return Data::adopt(std::move(encoder.file));
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

} // namespace caddis::image
