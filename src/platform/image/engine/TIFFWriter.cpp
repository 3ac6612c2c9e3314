#include "platform/image/engine/Writers.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <tiffio.h>

namespace caddis::image {

namespace {

struct Output {
    std::string bytes;
    std::size_t place = 0;
};

Output& of(thandle_t handle) { return *static_cast<Output*>(handle); }

tmsize_t read(thandle_t handle, void* out, tmsize_t count)
{
    Output& output = of(handle);
    const std::size_t start = std::min(output.place, output.bytes.size());
    const std::size_t some = std::min(static_cast<std::size_t>(count), output.bytes.size() - start);
    std::memcpy(out, output.bytes.data() + start, some);
    output.place = start + some;
    return static_cast<tmsize_t>(some);
}

tmsize_t write(thandle_t handle, void* from, tmsize_t count)
{
    Output& output = of(handle);
    const auto length = static_cast<std::size_t>(count);
    output.bytes.resize(std::max(output.bytes.size(), output.place + length));
    std::memcpy(output.bytes.data() + output.place, from, length);
    output.place += length;
    return count;
}

toff_t seek(thandle_t handle, toff_t offset, int from)
{
    Output& output = of(handle);
    const std::size_t base = from == SEEK_SET ? 0 : from == SEEK_CUR ? output.place : output.bytes.size();
    return output.place = base + offset;
}

void setTags(TIFF* tiff, const Bitmap& bitmap, const WriteRequest& request)
{
    const Size points = request.points;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, bitmap.pixelsWide);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, bitmap.pixelsHigh);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    const std::uint16_t extra[] = { EXTRASAMPLE_ASSOCALPHA };
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, extra);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, static_cast<int>(request.compression));
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 64);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, points.width > 0 ? bitmap.pixelsWide * 72 / points.width : 72);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, points.height > 0 ? bitmap.pixelsHigh * 72 / points.height : 72);
}

} // namespace

std::optional<Data> writeTIFF(const Bitmap& bitmap, const WriteRequest& request)
{
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    Output output;
    const auto close = [](thandle_t) { return 0; };
    const auto size = [](thandle_t handle) { return toff_t { of(handle).bytes.size() }; };
    const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(
        TIFFClientOpen("bitmap", "wm", &output, read, write, seek, close, size, nullptr, nullptr), TIFFClose);
    if (!tiff)
        return std::nullopt;
    setTags(tiff.get(), bitmap, request);
    std::vector<std::uint8_t> row(bitmap.bytesPerRow()); // LZW may change what it writes.
    for (std::uint32_t y = 0; y < bitmap.pixelsHigh; ++y) {
        std::copy_n(bitmap.row(y), row.size(), row.begin());
        if (TIFFWriteScanline(tiff.get(), row.data(), y, 0) < 0)
            return std::nullopt;
    }
    if (!TIFFWriteDirectory(tiff.get()))
        return std::nullopt;
    return Data::adopt(std::move(output.bytes));
}

} // namespace caddis::image
