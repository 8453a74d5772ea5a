#include "curves/PlacedKey.h"

#include "curves/CurvePlacement.h"
#include "document/Frames.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Editor {

using VQ::Math::Interpolation::InterpolationType;
using ZT::EditableMotionCurve;

namespace {

// The last key at or before a frame, else the first key. Curves find keys by exact frames only: where keys
// are dense, one is found in a few steps; where they are not, there are few to walk over.
EditableMotionCurve::iterator lastAtOrBefore(EditableMotionCurve& curve, double frame) {
    constexpr unsigned int most = 16;
    auto found = curve.begin();
    if (found == curve.end() || !(frame > found->first)) {
        return found;
    }
    const auto from = static_cast<unsigned int>(std::min(frame, double{lastPossibleFrame}));
    for (unsigned int step = 0; step < most && step <= from; ++step) {
        if (const auto exact = curve.find(from - step); exact != curve.end()) {
            return exact;
        }
    }
    for (auto next = found; next != curve.end() && next->first <= frame; ++next) {
        found = next;
    }
    return found;
}

} // namespace

std::vector<PlacedKey> keysAround(EditableMotionCurve& curve, double first, double last) {
    std::vector<PlacedKey> keys;
    for (auto position = lastAtOrBefore(curve, first); position != curve.end(); ++position) {
        const auto& [frame, key] = *position;
        keys.push_back({frame, key});
        if (frame > last) {
            break;
        }
    }
    return keys;
}

std::optional<QPointF> handleEnd(const CurvePlacement& placement, const PlacedKey& placed,
                                 ZT::TangentSide side) {
    const InterpolationType type = placed.key->getTangentType(side);
    if (type != InterpolationType::bezier && type != InterpolationType::bezierAuto) {
        return std::nullopt;
    }
    const auto [x, y] = placed.key->getTangentOffset(side);
    const QPointF end =
        placement.toPoint(placed.frame + double{x}, double{placed.key->getValue()} + double{y});
    return std::isfinite(end.x()) && std::isfinite(end.y()) ? std::optional(end) : std::nullopt;
}

double roomOf(const CurvePlacement& placement, const PlacedKey& placed) {
    const EditableMotionCurve* const curve = placed.key->getParentCurve();
    double frames = std::numeric_limits<double>::infinity();
    if (const auto* const previous = curve->getPreviousKey(placed.key)) {
        frames = placed.frame - ZT::index(previous);
    }
    if (const auto* const next = curve->getNextKey(placed.key)) {
        frames = std::min<double>(frames, ZT::index(next) - placed.frame);
    }
    return frames * placement.pixelsPerFrame();
}

} // namespace Editor
