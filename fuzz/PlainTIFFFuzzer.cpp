// The pictures that a helper sends, as report reads them.
//
// Invariants: a bitmap has as many bytes as its sides say, neither side is 0, and without alpha it is opaque.

#include "Fuzz.h"
#include "batch/PlainTIFF.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const caddis::Data file = caddis::Data::copyOf({ reinterpret_cast<const char*>(data), size });
    const auto bitmap = caddis::tool::bitmapOfPlainTIFF(file);
    if (!bitmap)
        return 0;
    INVARIANT(bitmap->pixelsWide > 0 && bitmap->pixelsHigh > 0);
    INVARIANT(bitmap->pixels.size() == bitmap->bytesPerRow() * bitmap->pixelsHigh);
    for (std::size_t index = 3; !bitmap->hasAlpha && index < bitmap->pixels.size(); index += 4)
        INVARIANT(bitmap->pixels.bytes()[index] == 255);
    return 0;
}
