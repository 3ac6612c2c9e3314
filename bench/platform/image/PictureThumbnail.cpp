// picture-thumbnail FILE PIXELS OUT.png: a thumbnail by a process of its own. picture-thumbnail FOLDER:
// writes the photographs that bench/pictures.bench measures with. picture-thumbnail A B: the peak
// signal-to-noise ratio of two pictures in decibels.

#include "Photograph.h"
#include "platform/image/ImageFiles.h"
#include "platform/image/ImageSource.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

using namespace caddis;

std::optional<Bitmap> thumbnail(const char* file, std::uint32_t pixels)
{
    const auto source = ImageSource::createWithFile(String::fromUtf8(file));
    return source ? source->thumbnailAtIndex(0, { .maxPixelSize = pixels }) : std::nullopt;
}

void write(const std::string& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

int makePhotographs(const std::string& folder)
{
    const Bitmap bitmap = photograph(6000, 4000);
    write(folder + "/baseline.jpg", jpegOf(bitmap, false));
    write(folder + "/progressive.jpg", jpegOf(bitmap, true));
    write(folder + "/plain.png", PNGRepresentation(bitmap)->chars());
    write(folder + "/plain.tif", TIFFRepresentation(bitmap)->chars());
    write(folder + "/lzw.tif", TIFFRepresentation(bitmap, bitmap.size(), TIFFCompression::LZW)->chars());
    return 0;
}

int compare(const char* left, const char* right)
{
    const auto one = thumbnail(left, 0);
    const auto other = thumbnail(right, 0);
    if (!one || !other || one->size() != other->size())
        return 1;
    double sum = 0;
    for (std::size_t at = 0; at < one->pixels.size(); ++at)
        sum += std::pow(one->pixels.bytes()[at] - other->pixels.bytes()[at], 2);
    const double mean = sum / (static_cast<double>(one->pixels.size()) * 3 / 4);
    std::printf("%.1f\n", 10 * std::log10(255 * 255 / std::max(mean, 1e-9)));
    return 0;
}

} // namespace

int main(int count, char** arguments)
{
    if (count == 2)
        return makePhotographs(arguments[1]);
    if (count == 3)
        return compare(arguments[1], arguments[2]);
    const auto bitmap = count == 4
        ? thumbnail(arguments[1], static_cast<std::uint32_t>(std::atoi(arguments[2])))
        : std::nullopt;
    const auto png = bitmap ? PNGRepresentation(*bitmap) : std::nullopt;
    if (!png)
        return 1;
    write(arguments[3], png->chars());
    return 0;
}
