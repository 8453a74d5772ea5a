#pragma once

#include "fuzz/support/PlainState.h"
#include "model/EditableAnimation.h"
#include "tests/support/Snapshot.h"

#include <string>

/// The state of editable records as text.
namespace EditableState {

enum class Extent {
    all, ///< also which objects the keys are, to see whether a read that failed left the very same ones
    kept ///< without the handles that reading by its rules computes anew: automatic and constrained ones
};

inline std::string of(const ZT::EditableMotionCurveKey& key, Extent extent) {
    using VQ::Math::Position2D;
    using VQ::Math::Interpolation::InterpolationType;
    if (extent == Extent::all) {
        return Snapshot::of(key).toStdString();
    }
    VQ::Math::Interpolation::Key record = key.baseMotionCurveKey();
    const bool isConstrained = key.isSmooth() || key.isSymmetrical();
    if (isConstrained || record.leftTangentType == InterpolationType::bezierAuto) {
        record.leftTangentOffset = Position2D();
    }
    if (isConstrained || record.rightTangentType == InterpolationType::bezierAuto) {
        record.rightTangentOffset = Position2D();
    }
    return PlainState::of(record) + (key.isSmooth() ? " smooth" : "") +
           (key.isSymmetrical() ? " symmetrical" : "");
}

inline std::string of(const ZT::EditableMotionCurve& curve, Extent extent) {
    VQ::Animation::MotionCurve settings = curve.baseMotionCurve();
    settings.clear();
    std::string text = PlainState::of(settings);
    if (extent == Extent::all) {
        return text + '\n' + Snapshot::of(curve).toStdString();
    }
    for (const auto element : curve) {
        text += '\n' + std::to_string(element.first) + ": " + of(*element.second, extent);
    }
    return text;
}

/// The name by its bytes: they need not be UTF-8.
inline std::string of(const ZT::EditableAnimationLayer& layer, Extent extent) {
    VQ::Animation::AnimationLayer record = layer.baseAnimationLayer();
    record.curve->clear();
    return PlainState::of(record) + '\n' + of(*layer.getCurve(), extent);
}

inline std::string of(const ZT::EditableAnimation& animation, Extent extent) {
    std::string text;
    for (const ZT::EditableAnimationLayer* const layer : animation) {
        text += of(*layer, extent) + '\n';
    }
    return text;
}

} // namespace EditableState
