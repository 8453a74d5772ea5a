#pragma once

#include "base/Export.h"
#include "base/math/Position2D.h"

#include <utility>

namespace VQ::Math {

/// The handles of a "bezier auto" key from its two neighbouring segments, left handle first.
///
/// Distances are in frames and not negative, differences in value units, both from left to right. Each handle
/// spans a third of its segment. Their common slope is the distance-weighted mean of the two segments'
/// slopes, flat where the key is a local extremum or level with a neighbour, and limited so that neither
/// segment leaves the band between its end values: each handle's end stays in that band, and a cubic never
/// leaves the hull of its control points.
///
/// The result is finite for every input: a distance that is zero, negative or not finite gives that side a
/// handle of length zero, and a slope that cannot be computed counts as flat.
VQ_EXPORT std::pair<Position2D, Position2D> computeBezierKeyTangents(float dxPrevious, float dxNext,
                                                                     float dyPrevious, float dyNext) noexcept;

} // namespace VQ::Math
