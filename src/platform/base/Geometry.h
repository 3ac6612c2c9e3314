#pragma once

#include "platform/base/String.h"

/// Points, sizes and rectangles in a coordinate system whose y axis points up. Units are the holder's: points
/// of a page, pixels of a bitmap.
namespace caddis {

struct Point {
    double x = 0;
    double y = 0;

    friend constexpr bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;

    friend constexpr bool operator==(const Size&, const Size&) = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    constexpr Size size() const { return { width, height }; }

    friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

/// "{612, 792}": the width and height, each in up to 17 significant digits, so that no bit is lost.
String stringFromSize(Size size);

} // namespace caddis
