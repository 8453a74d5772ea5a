#pragma once

#include "base/math/Position2D.h"

#include <cstdint>

namespace VQ::Math::Interpolation {

/// How a curve runs along a tangent's segment.
enum class InterpolationType : std::int32_t {
    constant = 0,   ///< holds the earlier key's value
    linear = 1,     ///< a straight line
    bezier = 2,     ///< a cubic with the handle that the user set
    bezierAuto = 3, ///< a cubic with a handle computed from the neighbouring keys
};

/// The plain record of one curve key. Its frame is its place in the curve and is not part of the record.
struct Key {
    float value = 0.0F;
    InterpolationType leftTangentType = InterpolationType::bezierAuto;
    Position2D leftTangentOffset; ///< end of the incoming handle relative to the key; normally x <= 0
    InterpolationType rightTangentType = InterpolationType::bezierAuto;
    Position2D rightTangentOffset; ///< end of the outgoing handle relative to the key; normally x >= 0
};

} // namespace VQ::Math::Interpolation
