#pragma once

#include "platform/base/Geometry.h"

#include <cmath>

namespace caddis::pdf {

/// x' = a x + c y + e, y' = b x + d y + f.
struct Matrix {
    double a = 1;
    double b = 0;
    double c = 0;
    double d = 1;
    double e = 0;
    double f = 0;

    Point apply(double x, double y) const { return { a * x + c * y + e, b * x + d * y + f }; }
    void translate(double x, double y)
    {
        e += a * x + c * y;
        f += b * x + d * y;
    }
    double lengthOfX() const { return std::sqrt(a * a + b * b); }
    double lengthOfY() const { return std::sqrt(c * c + d * d); }

    /// This one first, then `next`.
    Matrix then(const Matrix& next) const
    {
        return { a * next.a + b * next.c, a * next.b + b * next.d, c * next.a + d * next.c,
            c * next.b + d * next.d, e * next.a + f * next.c + next.e, e * next.b + f * next.d + next.f };
    }
};

} // namespace caddis::pdf
