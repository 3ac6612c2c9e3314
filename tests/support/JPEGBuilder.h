#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include <jpeglib.h>

namespace caddis {

struct JPEGOptions {
    int orientation = 0; ///< 0: no Exif block
    std::string thumbnail {}; ///< a JPEG file for the Exif block; wants an orientation
    bool isProgressive = false;
};

/// A JPEG file made by the codec; `colour` gives 0xRRGGBB of a pixel.
inline std::string jpegFile(unsigned wide, unsigned high,
    const std::function<unsigned(unsigned x, unsigned y)>& colour, const JPEGOptions& options = {})
{
    jpeg_compress_struct codec {};
    jpeg_error_mgr errors {};
    codec.err = jpeg_std_error(&errors);
    jpeg_create_compress(&codec);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&codec, &bytes, &size);
    codec.image_width = wide;
    codec.image_height = high;
    codec.input_components = 3;
    codec.in_color_space = JCS_RGB;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, 95, TRUE);
    if (options.isProgressive)
        jpeg_simple_progression(&codec);
    jpeg_start_compress(&codec, TRUE);
    if (options.orientation) {
        const auto le32 = [](std::size_t number) {
            std::string text;
            for (int shift = 0; shift < 32; shift += 8)
                text += static_cast<char>(number >> shift & 0xFF);
            return text;
        };
        const auto entry = [&](std::size_t tag, std::size_t type, std::size_t value) {
            return le32(tag | type << 16) + le32(1) + le32(value);
        };
        const bool hasThumbnail = !options.thumbnail.empty();
        std::string exif = std::string("Exif\0\0II*\0", 10) + le32(8) + std::string("\1\0", 2)
            + entry(0x112, 3, static_cast<std::size_t>(options.orientation)) + le32(hasThumbnail ? 26 : 0);
        if (hasThumbnail)
            exif += std::string("\2\0", 2) + entry(0x201, 4, 56) + entry(0x202, 4, options.thumbnail.size())
                + le32(0) + options.thumbnail;
        jpeg_write_marker(
            &codec, 0xE1, reinterpret_cast<const JOCTET*>(exif.data()), static_cast<unsigned>(exif.size()));
    }
    std::vector<JSAMPLE> row(std::size_t { wide } * 3);
    for (unsigned y = 0; y < high; ++y) {
        for (unsigned x = 0; x < wide; ++x)
            for (unsigned component = 0; component < 3; ++component)
                row[x * 3 + component] = static_cast<JSAMPLE>(colour(x, y) >> (16 - component * 8) & 0xFF);
        JSAMPROW rows[] = { row.data() };
        jpeg_write_scanlines(&codec, rows, 1);
    }
    jpeg_finish_compress(&codec);
    std::string file(reinterpret_cast<char*>(bytes), size);
    jpeg_destroy_compress(&codec);
    std::free(bytes);
    return file;
}

} // namespace caddis
