#include "base/math/Position2D.h"

#include "base/math/Narrowing.h"

#include <cmath>

namespace VQ::Math {

namespace {

// In double the squares of two floats can neither overflow nor vanish.
double length(double x, double y) noexcept {
    return std::sqrt(x * x + y * y);
}

} // namespace

float Position2D::norm() const noexcept {
    return toFloat(length(x, y));
}

bool Position2D::isNear(const Position2D& other, const float& tolerance) const noexcept {
    return length(double{x} - double{other.x}, double{y} - double{other.y}) <= double{tolerance};
}

} // namespace VQ::Math
