#pragma once

#include "base/Export.h"
#include "base/TangentSide.h"
#include "base/math/Interpolation.h"

#include <iosfwd>

// Records on one line, for logs, debuggers and failing tests: what prints through std::ostream, as GoogleTest
// and RapidCheck do, shows them. Numbers are in their shortest form that tells them apart. Only for reading:
// trees are what is written and read back.

namespace VQ::Math {

/// "(3, 0.25)".
VQ_EXPORT std::ostream& operator<<(std::ostream& stream, const Position2D& point);

} // namespace VQ::Math

namespace VQ::Math::Interpolation {

/// "bezier auto"; a value that is no type as "type 7".
VQ_EXPORT std::ostream& operator<<(std::ostream& stream, InterpolationType type);
/// "0.5, left bezier (-3, -0.25), right linear (1, 0)".
VQ_EXPORT std::ostream& operator<<(std::ostream& stream, const Key& key);

} // namespace VQ::Math::Interpolation

namespace VQ::Animation {

class Animation;
class AnimationLayer;
class MotionCurve;

/// "3 keys at 0 12 25"; of many keys the first eight frames.
VQ_EXPORT std::ostream& operator<<(std::ostream& stream, const MotionCurve& curve);
/// "layer "elbow", muted, 3 keys at 0 12 25".
VQ_EXPORT std::ostream& operator<<(std::ostream& stream, const AnimationLayer& layer);
/// "2 layers: elbow wrist".
VQ_EXPORT std::ostream& operator<<(std::ostream& stream, const Animation& animation);

} // namespace VQ::Animation

namespace ZT {

/// "left"; a value that is no side as "side 7".
VQ_EXPORT std::ostream& operator<<(std::ostream& stream, TangentSide side);

} // namespace ZT
