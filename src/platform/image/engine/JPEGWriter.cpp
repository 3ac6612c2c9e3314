#include "platform/image/engine/Writers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>
#include <stdexcept>

namespace caddis::image {

namespace {

// Errors leave libjpeg as exceptions, as in JPEGReader.cpp.
struct Encoder {
    jpeg_compress_struct codec {};
    jpeg_error_mgr errors {};
    unsigned char* bytes = nullptr;
    unsigned long size = 0;

    Encoder()
    {
        codec.err = jpeg_std_error(&errors);
        errors.error_exit = [](j_common_ptr) { throw std::runtime_error("libjpeg"); };
        jpeg_create_compress(&codec);
        jpeg_mem_dest(&codec, &bytes, &size);
    }
    ~Encoder()
    {
        jpeg_destroy_compress(&codec);
        std::free(bytes);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
};

void encode(Encoder& encoder, const Bitmap& bitmap, double factor)
{
    auto& codec = encoder.codec;
    codec.image_width = bitmap.pixelsWide;
    codec.image_height = bitmap.pixelsHigh;
    codec.input_components = 3;
    codec.in_color_space = JCS_RGB;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, static_cast<int>(std::lround(std::clamp(factor, 0.0, 1.0) * 100)), TRUE);
    jpeg_start_compress(&codec, TRUE);
    std::vector<JSAMPLE> row(std::size_t { bitmap.pixelsWide } * 3);
    JSAMPROW rows[] = { row.data() };
    for (std::uint32_t y = 0; y < bitmap.pixelsHigh; ++y) {
        opaqueRow(bitmap, y, row.data());
        jpeg_write_scanlines(&codec, rows, 1);
    }
    jpeg_finish_compress(&codec);
}

} // namespace

std::optional<Data> writeJPEG(const Bitmap& bitmap, const WriteRequest& request)
{
    try {
        Encoder encoder;
        encode(encoder, bitmap, request.factor);
        const unsigned long size = encoder.size;
        return Data::adoptMalloc(std::exchange(encoder.bytes, nullptr), size);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

} // namespace caddis::image
