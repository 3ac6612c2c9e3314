#pragma once

#include "platform/base/Geometry.h"

#include <algorithm>
#include <cmath>

namespace caddis {

/// `size` as it has to be to lie within `maximum` with its proportions kept: never enlarged, unchanged when
/// it fits; else the sides are rounded down, and one that comes out as nothing is 1.
inline Size fitted(Size maximum, Size size)
{
    if (!(size.width > maximum.width) && !(size.height > maximum.height))
        return size;
    const double height = maximum.width / size.width * size.height;
    const Size fit = height > maximum.height
        ? Size { std::floor(maximum.height / size.height * size.width), std::floor(maximum.height) }
        : Size { std::floor(maximum.width), std::floor(height) };
    return { fit.width > 0 ? fit.width : 1, fit.height > 0 ? fit.height : 1 };
}

} // namespace caddis
