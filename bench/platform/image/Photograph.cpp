#include "Photograph.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>

namespace caddis {

Bitmap photograph(std::uint32_t wide, std::uint32_t high)
{
    std::vector<std::uint8_t> pixels(std::size_t { wide } * high * 4);
    std::uint32_t noise = 1;
    std::uint8_t* pixel = pixels.data();
    for (std::uint32_t y = 0; y < high; ++y)
        for (std::uint32_t x = 0; x < wide; ++x, pixel += 4) {
            const double shade = 128 + 50 * std::sin(x / 211.0) + 40 * std::sin(y / 137.0 + x / 400.0);
            const double edge = (x / 60 + y / 45) % 7 == 0 ? -30 : 0;
            for (int component = 0; component < 3; ++component) {
                noise = noise * 1664525 + 1013904223;
                const double grain = static_cast<double>(noise >> 28) - 8;
                pixel[component] = static_cast<std::uint8_t>(
                    std::fmin(std::fmax(shade + edge + grain + 10 * component, 0), 255));
            }
            pixel[3] = 255;
        }
    return { wide, high, false, Data::adopt(std::move(pixels)) };
}

std::string jpegOf(const Bitmap& bitmap, bool isProgressive)
{
    jpeg_compress_struct codec {};
    jpeg_error_mgr errors {};
    codec.err = jpeg_std_error(&errors);
    jpeg_create_compress(&codec);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&codec, &bytes, &size);
    codec.image_width = bitmap.pixelsWide;
    codec.image_height = bitmap.pixelsHigh;
    codec.input_components = 4;
    codec.in_color_space = JCS_EXT_RGBX;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, 90, TRUE);
    if (isProgressive)
        jpeg_simple_progression(&codec);
    jpeg_start_compress(&codec, TRUE);
    for (std::size_t y = 0; y < bitmap.pixelsHigh; ++y) {
        JSAMPROW rows[] = { const_cast<JSAMPROW>(bitmap.row(y)) };
        jpeg_write_scanlines(&codec, rows, 1);
    }
    jpeg_finish_compress(&codec);
    std::string file(reinterpret_cast<char*>(bytes), size);
    jpeg_destroy_compress(&codec);
    std::free(bytes);
    return file;
}

} // namespace caddis
