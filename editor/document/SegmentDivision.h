#pragma once

#include "base/math/Interpolation.h"

namespace Editor {

/// What divides the segment between two keys without changing its shape: a key with two free handles, and the
/// handles that the keys beside it get instead of theirs.
struct SegmentDivision {
    VQ::Math::Interpolation::Key key;
    VQ::Math::Position2D leftsHandle;  ///< the right one of the key before
    VQ::Math::Position2D rightsHandle; ///< the left one of the key behind
};

/// Divides the cubic of a segment at @p frame, where leftFrame < frame < rightFrame, as evaluateSegment()
/// draws it. For segments that are neither constant nor linear on both sides.
///
/// Exact but for rounding to floats where the two handles, as they are drawn, together reach no further than
/// four thirds of the segment. Beyond that a part of the cubic may need a handle longer than the part, which
/// is drawn shortened: then the value and the slopes at the three keys are kept, not all of the shape between
/// them.
SegmentDivision divideSegment(unsigned int leftFrame, const VQ::Math::Interpolation::Key& left,
                              unsigned int rightFrame, const VQ::Math::Interpolation::Key& right,
                              unsigned int frame);

} // namespace Editor
