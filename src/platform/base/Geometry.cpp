#include "platform/base/Geometry.h"

#include <cstdio>

namespace caddis {

String stringFromSize(Size size)
{
    char text[80];
    const int length = std::snprintf(text, sizeof text, "{%.17g, %.17g}", size.width, size.height);
    return String::fromLatin1({ text, static_cast<std::size_t>(length) });
}

} // namespace caddis
