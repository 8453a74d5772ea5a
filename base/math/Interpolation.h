#pragma once

#include "base/math/Position2D.h"

#include <cstdint>

/// What a key says about the curve on either side of it.
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
    /// In value units; any float, also one that is not finite.
    float value = 0.0F;
    /// Of the segment from the previous key; its other end has a say too, see
    /// VQ::Animation::evaluateSegment().
    InterpolationType leftTangentType = InterpolationType::bezierAuto;
    Position2D leftTangentOffset; ///< end of the incoming handle relative to the key; normally x <= 0
    /// Of the segment to the next key, in the same way.
    InterpolationType rightTangentType = InterpolationType::bezierAuto;
    Position2D rightTangentOffset; ///< end of the outgoing handle relative to the key; normally x >= 0
};

} // namespace VQ::Math::Interpolation
