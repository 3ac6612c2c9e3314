// The readers of pictures that are our own: the first byte chooses the head of a kind of file, so that the
// rest reaches the reader of that kind.
//
// Invariants: pictures are counted to the limit; those of each picture.

#include "PictureChecks.h"
#include "platform/image/Limits.h"

using namespace std::string_literals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string heads[] = {
        "BM",
        "\0\0\1\0"s,
        "icns",
        "P6 ",
        "P3 ",
        "P7\n",
        "GIF89a",
        "8BPS",
        "\0\0\2\0\0\0\0\0\0\0\0\0"s,
        "\0\0\x0A\0\0\0\0\0\0\0\0\0"s,
        std::string(515, '\0') + "\0\0\0\0\x40\0\x40\0\x11\2\xFF"s,
        "\0\0\0\x14\x66typcrx \0\0\0\1crx "s,
        "FUJIFILMCCD-RAW",
        "\0\0\0\x08idsc"s,
    };
    if (size == 0)
        return 0;
    const std::string& head = heads[data[0] % std::size(heads)];
    const auto source = caddis::ImageSource::createWithData(
        caddis::Data::adopt(head + std::string(reinterpret_cast<const char*>(data) + 1, size - 1)));
    if (!source)
        return 0;
    INVARIANT(source->count() <= caddis::image::limits::MostFrames);
    for (std::size_t index = 0; index < std::min<std::size_t>(source->count(), 3); ++index)
        checkPicture(*source, index, true);
    return 0;
}
