// caddis-rare-picture CODER INPUT OUTPUT: the first picture in a file of a kind that only ImageMagick reads.
// The coder is given by who calls, so that no file decides which of the very many is run.

#include "platform/image/RarePicture.h"

#include <Magick++.h>

#include <fstream>

namespace {

constexpr std::uint64_t MiB = 1 << 20;

void setLimits()
{
    using Magick::ResourceLimits;
    ResourceLimits::memory(384 * MiB);
    ResourceLimits::map(384 * MiB);
    ResourceLimits::disk(0);
    ResourceLimits::area(64'000'000);
    ResourceLimits::width(65'535);
    ResourceLimits::height(65'535);
    ResourceLimits::thread(1);
}

bool convert(const char* coder, const char* input, const char* output)
{
    Magick::Image image;
    image.quiet(true);
    image.magick(coder);
    image.read(std::string(coder) + ":" + input + "[0]");
    const std::size_t wide = image.columns();
    const std::size_t high = image.rows();
    const caddis::image::RarePicture head { static_cast<std::uint32_t>(wide),
        static_cast<std::uint32_t>(high), image.matte() ? 1U : 0U,
        static_cast<std::uint32_t>(image.depth()) };
    image.colorSpace(Magick::sRGBColorspace);
    std::ofstream file(output, std::ios::binary);
    file.write(reinterpret_cast<const char*>(&head), sizeof head);
    std::vector<char> row(wide * 4);
    for (std::size_t y = 0; y < high; ++y) {
        image.write(0, static_cast<::ssize_t>(y), wide, 1, "RGBA", Magick::CharPixel, row.data());
        file.write(row.data(), static_cast<std::streamsize>(row.size()));
    }
    file.close();
    return file.good();
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 4)
        return 2;
    try {
        Magick::InitializeMagick(nullptr);
        setLimits();
        return convert(arguments[1], arguments[2], arguments[3]) ? 0 : 1;
    } catch (const std::exception&) {
        return 1;
    }
}
