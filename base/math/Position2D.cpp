#include "base/math/Position2D.h"

#include <cmath>
#include <limits>

namespace VQ::Math {

namespace {

// In double the squares of two floats can neither overflow nor vanish.
double length(double x, double y) noexcept { return std::sqrt(x * x + y * y); }

} // namespace

float Position2D::norm() const noexcept {
    const double exact = length(x, y);
    // The diagonal of two huge floats is beyond the largest float; converting it would be undefined.
    return exact > static_cast<double>(std::numeric_limits<float>::max()) ? std::numeric_limits<float>::infinity()
                                                                         : static_cast<float>(exact);
}

bool Position2D::isNear(const Position2D& other, const float& tolerance) const noexcept {
    return length(double{x} - double{other.x}, double{y} - double{other.y}) <= double{tolerance};
}

} // namespace VQ::Math
