// Whole files with pictures.
//
// Invariants: those of each picture, with and without its embedded one; behind the last there is none.

#include "PictureChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto source = caddis::ImageSource::createWithData(caddis::Data::copyOf(bytes));
    if (!source)
        return 0;
    INVARIANT(!source->infoAtIndex(source->count()));
    source->propertiesAtIndex(0);
    for (const bool allowsEmbedded : { false, true })
        checkPicture(*source, 0, allowsEmbedded);
    return 0;
}
