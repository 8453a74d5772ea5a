#pragma once

#include "base/TangentSide.h"
#include "model/EditableMotionCurve.h"

#include <QPointF>

#include <optional>
#include <vector>

namespace Editor {

class CurvePlacement;

/// A key with its frame, for the time of one paint or one look for what is under the pointer.
struct PlacedKey {
    unsigned int frame;
    ZT::EditableMotionCurveKey* key;
};

/// The keys from frame @p first to @p last, and the next one on each side where there is one: what is needed
/// to draw that part. O(log n + keys) where a key stands close before @p first, else O(n).
std::vector<PlacedKey> keysAround(ZT::EditableMotionCurve& curve, double first, double last);

/// Where the handle ends in pixels, also for an automatic one. Empty where the key or the handle is not
/// finite and for tangents without handle.
std::optional<QPointF> handleEnd(const CurvePlacement& placement, const PlacedKey& placed,
                                 ZT::TangentSide side);

/// Keys that are closer to a neighbour than this have no handles, in pixels.
constexpr double roomForHandles = 6.0;

/// The pixels between the key and its nearer neighbour; infinite without neighbours. O(1).
double roomOf(const CurvePlacement& placement, const PlacedKey& placed);

} // namespace Editor
