#pragma once

#include "base/math/BezierTangents.h"
#include "model/EditableMotionCurve.h"

#include <rapidcheck.h>

#include <iterator>
#include <utility>
#include <vector>

/// What holds for a curve after every operation, each asked of the curve and compared with one plain walk.
namespace Soundness {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;

/// Whether changes of a key reach keysChanged(), which they do not while the batch depth is raised. The key
/// gets another value and its own one again, to the bit.
inline bool isListening(Curve& curve, Key& key) {
    int heard = 0;
    const auto connection = QObject::connect(&curve, &Curve::keysChanged, [&heard] { ++heard; });
    const float value = key.getValue();
    key.setValue(value == 1.0F ? 2.0F : 1.0F);
    key.setValue(value);
    QObject::disconnect(connection);
    RC_ASSERT((heard == 0 || heard == 2));
    return heard == 2;
}

/// The frames ascend, and every lookup agrees with the walk.
inline void requireIndex(Curve& curve) {
    const Curve& readable = curve;
    const std::vector<std::pair<unsigned int, Key*>> walk(curve.begin(), curve.end());
    std::set<unsigned int> frames;
    for (std::size_t i = 0; i < walk.size(); ++i) {
        const auto [frame, key] = walk[i];
        Key* const previous = i == 0 ? nullptr : walk[i - 1].second;
        Key* const next = i + 1 == walk.size() ? nullptr : walk[i + 1].second;
        RC_ASSERT((i == 0 || walk[i - 1].first < frame));
        RC_ASSERT(key->getParentCurve() == &curve);
        RC_ASSERT(ZT::index(key) == frame);
        RC_ASSERT(curve.getIndexOf(key) == frame);
        RC_ASSERT(curve.getKey(frame) == key);
        RC_ASSERT(readable.getKey(frame) == key);
        RC_ASSERT(curve.find(frame)->second == key);
        RC_ASSERT(readable.find(frame)->second == key);
        RC_ASSERT(curve._find(key)->first == frame);
        RC_ASSERT(!curve.isIndexAvailable(frame));
        RC_ASSERT(curve.getPreviousKey(key) == previous);
        RC_ASSERT(readable.getPreviousKey(key) == previous);
        RC_ASSERT(curve.getNextKey(key) == next);
        RC_ASSERT(readable.getNextKey(key) == next);
        frames.insert(frame);
    }
    for (const unsigned int frame : frames) {
        RC_ASSERT((frames.count(frame + 1U) == 0U) == curve.isIndexAvailable(frame + 1U));
    }
    RC_ASSERT(curve.size() == walk.size());
    RC_ASSERT(curve.empty() == walk.empty());
    RC_ASSERT(curve.getIndexList() == frames);
    RC_ASSERT(curve.getGreaterIndex() == (walk.empty() ? 0U : walk.back().first));
}

/// No automatic handle is further from its formula than the tolerance.
inline void requireAutomaticHandles(const Curve& curve) {
    using VQ::Math::Interpolation::InterpolationType;
    constexpr float tolerance = 0.0001F;
    unsigned int previousFrame = 0;
    const Key* previous = nullptr;
    for (auto position = curve.begin(); position != curve.end();) {
        const auto [frame, key] = *position;
        const bool isLast = ++position == curve.end();
        const float value = key->getValue();
        const auto [left, right] =
            VQ::Math::computeBezierKeyTangents(static_cast<float>(frame - previousFrame),
                                               isLast ? 0.0F : static_cast<float>(position->first - frame),
                                               previous == nullptr ? 0.0F : value - previous->getValue(),
                                               isLast ? 0.0F : position->second->getValue() - value);
        const VQ::Math::Interpolation::Key record = key->baseMotionCurveKey();
        RC_ASSERT((record.leftTangentType != InterpolationType::bezierAuto ||
                   record.leftTangentOffset.isNear(left, tolerance)));
        RC_ASSERT((record.rightTangentType != InterpolationType::bezierAuto ||
                   record.rightTangentOffset.isNear(right, tolerance)));
        previousFrame = frame;
        previous = key;
    }
}

/// The batch depth is 0: no edit so far was given nothing to do.
inline void requireOutsideBatch(Curve& curve) {
    RC_ASSERT(!curve._isInBatch());
    // The parentheses keep the assertion from looking at both sides.
    RC_ASSERT((curve.empty() || isListening(curve, *curve.begin()->second)));
}

} // namespace Soundness
