// The readers of pictures that are our own: the first byte chooses the head of a kind of file, so that the
// rest reaches the reader of that kind.
//
// Invariants: the head decides the kind; pictures are counted to the limit; those of each picture.

#include "PictureChecks.h"
#include "platform/image/Limits.h"

using namespace std::string_literals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::pair<std::string, const char16_t*> heads[] = {
        { "BM", u"com.microsoft.bmp" },
        { "\0\0\1\0"s, u"com.microsoft.ico" },
        { "icns", u"com.apple.icns" },
        { "P6 ", u"public.pbm" },
        { "P3 ", u"public.pbm" },
        { "P7\n", u"public.pbm" },
        { "GIF89a", u"com.compuserve.gif" },
        { "8BPS", u"com.adobe.photoshop-image" },
        { "\0\0\2\0\0\0\0\0\0\0\0\0"s, u"com.truevision.tga-image" },
        { "\0\0\x0A\0\0\0\0\0\0\0\0\0"s, u"com.truevision.tga-image" },
        { std::string(515, '\0') + "\0\0\0\0\x40\0\x40\0\x11\2\xFF"s, u"com.apple.pict" },
        { "\0\0\0\x14\x66typcrx \0\0\0\1crx "s, u"com.canon.cr3-raw-image" },
        { "FUJIFILMCCD-RAW", u"com.fuji.raw-image" },
        { "\0\0\0\x08idsc"s, u"com.apple.quicktime-image" },
    };
    if (size == 0)
        return 0;
    const auto& [head, type] = heads[data[0] % std::size(heads)];
    const auto source = caddis::ImageSource::createWithData(
        caddis::Data::adopt(head + std::string(reinterpret_cast<const char*>(data) + 1, size - 1)));
    if (!source)
        return 0;
    INVARIANT(source->type() == caddis::String(type));
    INVARIANT(source->count() <= caddis::image::limits::MostFrames);
    for (std::size_t index = 0; index < std::min<std::size_t>(source->count(), 3); ++index)
        checkPicture(*source, index, true);
    return 0;
}
