// Thumbnails of 256 pixels from photographs of twelve megapixels, in this process. The floors are what the
// codec's own library needs for the same file: an eighth of the size from libjpeg, all rows from libpng.

#include "Photograph.h"
#include "platform/image/ImageFiles.h"
#include "platform/image/ImageSource.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <functional>
#include <jpeglib.h>
#include <png.h>

namespace caddis {
namespace {

constexpr std::uint32_t Wide = 4000;
constexpr std::uint32_t High = 3000;

const Bitmap& large()
{
    static const Bitmap bitmap = photograph(Wide, High);
    return bitmap;
}

const Data& baseline()
{
    static const Data file = Data::adopt(jpegOf(large(), false));
    return file;
}

const Data& progressive()
{
    static const Data file = Data::adopt(jpegOf(large(), true));
    return file;
}

const Data& portable()
{
    static const Data file = *PNGRepresentation(large());
    return file;
}

// The same photograph with a picture of 160 pixels in its Exif block, as cameras write it.
const Data& withEmbedded()
{
    static const Data file = [] {
        const std::string small = jpegOf(photograph(160, 120), false);
        const auto le32 = [](std::size_t number) {
            std::string text;
            for (int shift = 0; shift < 32; shift += 8)
                text += static_cast<char>(number >> shift & 0xFF);
            return text;
        };
        std::string exif("Exif\0\0II*\0\x08\0\0\0\0\0\x0E\0\0\0\2\0\1\2\4\0\1\0\0\0", 30);
        exif += le32(44) + std::string("\2\2\4\0\1\0\0\0", 8) + le32(small.size()) + le32(0) + small;
        const std::size_t length = exif.size() + 2;
        std::string whole(baseline().chars());
        whole.insert(2,
            std::string("\xFF\xE1", 2) + static_cast<char>(length >> 8) + static_cast<char>(length) + exif);
        return Data::adopt(std::move(whole));
    }();
    return file;
}

void measure(benchmark::State& state, const Data& file, bool allowsEmbedded = false)
{
    for (auto _ : state) {
        const auto source = ImageSource::createWithData(file);
        const auto bitmap
            = source->thumbnailAtIndex(0, { .maxPixelSize = 256, .allowsEmbedded = allowsEmbedded });
        if (!bitmap || bitmap->pixelsWide != (allowsEmbedded ? 160 : 256))
            state.SkipWithError("no thumbnail");
    }
}

void decodeEighth(benchmark::State& state, const Data& file)
{
    for (auto _ : state) {
        jpeg_decompress_struct codec {};
        jpeg_error_mgr errors {};
        codec.err = jpeg_std_error(&errors);
        jpeg_create_decompress(&codec);
        jpeg_mem_src(&codec, file.bytes(), file.size());
        jpeg_read_header(&codec, TRUE);
        codec.scale_num = 1;
        codec.scale_denom = 8;
        codec.out_color_space = JCS_EXT_RGBX;
        jpeg_start_decompress(&codec);
        std::vector<JSAMPLE> row(std::size_t { codec.output_width } * 4);
        JSAMPROW rows[] = { row.data() };
        while (codec.output_scanline < codec.output_height)
            jpeg_read_scanlines(&codec, rows, 1);
        benchmark::DoNotOptimize(row.data());
        jpeg_destroy_decompress(&codec);
    }
}

void readRows(benchmark::State& state, const Data& file)
{
    for (auto _ : state) {
        png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        std::string_view rest = file.chars();
        png_set_read_fn(png, &rest, [](png_structp reader, png_bytep out, std::size_t count) {
            auto& bytes = *static_cast<std::string_view*>(png_get_io_ptr(reader));
            std::copy_n(bytes.begin(), count, out);
            bytes.remove_prefix(count);
        });
        png_read_info(png, info);
        png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
        std::vector<png_byte> row(std::size_t { Wide } * 4);
        for (std::uint32_t y = 0; y < High; ++y)
            png_read_row(png, row.data(), nullptr);
        benchmark::DoNotOptimize(row.data());
        png_destroy_read_struct(&png, &info, nullptr);
    }
}

void add(const char* name, const std::function<void(benchmark::State&)>& work)
{
    benchmark::RegisterBenchmark(name, work)->Unit(benchmark::kMillisecond);
}

const bool registered = [] {
    add("thumbnail/jpeg/caddis", [](auto& state) { measure(state, baseline()); });
    add("thumbnail/jpeg/floor:libjpeg", [](auto& state) { decodeEighth(state, baseline()); });
    add("thumbnail/progressive/caddis", [](auto& state) { measure(state, progressive()); });
    add("thumbnail/progressive/floor:libjpeg", [](auto& state) { decodeEighth(state, progressive()); });
    add("thumbnail/embedded/caddis", [](auto& state) { measure(state, withEmbedded(), true); });
    add("thumbnail/png/caddis", [](auto& state) { measure(state, portable()); });
    add("thumbnail/png/floor:libpng", [](auto& state) { readRows(state, portable()); });
    return true;
}();

} // namespace
} // namespace caddis
