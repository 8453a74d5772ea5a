#pragma once

#include "base/Export.h"
#include "base/math/Interpolation.h"

namespace VQ::Animation {

class MotionCurve;

/// The curve's value at @p frame, also between frames. O(log n).
///
/// Before the first key it is the first key's value, after the last key the last one's, and 0 without keys. A
/// frame that is NaN gives NaN.
VQ_EXPORT float evaluate(const MotionCurve& curve, double frame);

/// The value at @p frame on the segment from @p left at @p leftFrame to @p right at @p rightFrame, where
/// leftFrame <= frame <= rightFrame.
///
/// The segment has the type of the left key's outgoing and of the right key's incoming tangent. Where one of
/// them is "constant" it holds the left value up to the right key. Where both are "linear" it is a straight
/// line. Otherwise it is a cubic; the handle on a linear side lies on the straight line. A handle that is
/// longer in frames than the segment is scaled back to it, one that points out of the segment stands upright,
/// and one that is not finite counts as zero; so frames grow steadily along the cubic and every frame has one
/// value.
///
/// A key value that is not finite makes the values between it and its neighbours infinite or NaN.
///
/// The cubic's parameter is found by bisection: the frame where it is read differs from @p frame by at most
/// 1e-12 of the segment's length.
VQ_EXPORT float evaluateSegment(unsigned int leftFrame, const Math::Interpolation::Key& left,
                                unsigned int rightFrame, const Math::Interpolation::Key& right, double frame);

} // namespace VQ::Animation
