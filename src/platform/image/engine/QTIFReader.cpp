// A QuickTime image: boxes of which one holds the picture, nearly always as a file of another kind.

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Formats.h"
#include "platform/image/engine/Readers.h"

namespace caddis::image {

std::unique_ptr<Reader> openQTIF(const Data& data)
{
    const Bytes bytes(data);
    for (std::size_t place = 0; bytes.has(place, 8);) {
        const std::size_t size = bytes.be32(place);
        if (bytes.isAt(place + 4, "idat")) {
            const std::size_t length = std::min(std::max<std::size_t>(size, 8), bytes.size() - place) - 8;
            const Data picture = data.slice({ place + 8, length });
            const Format* const format = formatOf(picture.chars());
            const bool isOther = format && !format->rareCoder && format->open != openQTIF;
            return isOther ? opened(*format, picture) : nullptr;
        }
        if (size < 8)
            break;
        place += size;
    }
    return nullptr;
}

} // namespace caddis::image
