#pragma once

#include "base/TangentSide.h"
#include "base/math/Interpolation.h"

#include <QPair>

#include <rapidcheck.h>

#include <cmath>
#include <limits>

/// What random edits of a small curve are made of. Numbers are few and exact, so that keys and handles meet.
namespace Choices {

inline int pick(int count) {
    return *rc::gen::inRange(0, count);
}
inline int pick(int first, int behind) {
    return *rc::gen::inRange(first, behind);
}
inline bool yesOrNo() {
    return pick(2) == 1;
}
inline float aHalf() {
    return 0.5F * static_cast<float>(pick(-6, 7));
}
inline unsigned int aFrame() {
    return *rc::gen::inRange(0U, 12U);
}
inline ZT::TangentSide aSide() {
    return static_cast<ZT::TangentSide>(pick(2));
}
inline VQ::Math::Interpolation::InterpolationType aType() {
    return static_cast<VQ::Math::Interpolation::InterpolationType>(3 - pick(4));
}
inline QPair<float, float> anOffset() {
    return {aHalf(), aHalf()};
}
/// Where a drag may end, in quarters of a frame; seldom no frame at all.
inline double aPosition() {
    const double rare[] = {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e19, 4294967298.5};
    return pick(30) == 29 ? rare[pick(5)] : 0.25 * pick(-6, 52);
}

} // namespace Choices
