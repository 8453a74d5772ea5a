#include "base/math/BezierTangents.h"

#include "base/math/Narrowing.h"

#include <algorithm>
#include <cmath>

namespace VQ::Math {

namespace {

double usableDistance(float distance) noexcept {
    return std::isfinite(distance) && distance > 0.0F ? double{distance} : 0.0;
}

// With slopes s1 and s2 over distances d1 and d2 the weighted mean (d1 s1 + d2 s2) / (d1 + d2) is the slope
// of the chord between the two neighbours. A handle over d/3 ends within [0, d s] as long as its slope lies
// between 0 and 3 s, hence the limit.
double limitedSlope(double dx1, double dx2, double dy1, double dy2) noexcept {
    const bool usable = dx1 > 0.0 && dx2 > 0.0 && std::isfinite(dy1) && std::isfinite(dy2);
    const bool rising = dy1 > 0.0 && dy2 > 0.0;
    const bool falling = dy1 < 0.0 && dy2 < 0.0;
    if (!usable || !(rising || falling)) {
        return 0.0;
    }
    const double steepest = 3.0 * std::min(std::abs(dy1 / dx1), std::abs(dy2 / dx2));
    const double mean = (dy1 + dy2) / (dx1 + dx2);
    return rising ? std::min(mean, steepest) : std::max(mean, -steepest);
}

} // namespace

std::pair<Position2D, Position2D> computeBezierKeyTangents(float dxPrevious, float dxNext, float dyPrevious,
                                                           float dyNext) noexcept {
    const double before = usableDistance(dxPrevious);
    const double after = usableDistance(dxNext);
    const double slope = limitedSlope(before, after, double{dyPrevious}, double{dyNext});
    Position2D left(before > 0.0 ? static_cast<float>(-before / 3.0) : 0.0F, 0.0F);
    Position2D right(static_cast<float>(after / 3.0), 0.0F);
    // Without a slope zeros keep no sign. A handle that ends at a neighbour's value is rounded to that.
    if (slope != 0.0) {
        left.y = toFloat(-slope * before / 3.0);
        right.y = toFloat(slope * after / 3.0);
    }
    return {left, right};
}

} // namespace VQ::Math
