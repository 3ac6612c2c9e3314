#include "platform/image/ImageModule.h"

namespace caddis::image {

const Module& module()
{
    static const Module module("caddis-image");
    return module;
}

} // namespace caddis::image
