#pragma once

#include "fuzz/support/PlainState.h"
#include "model/EditableAnimation.h"
#include "tests/support/Snapshot.h"

#include <string>

/// The state of editable records as text. Two texts for each: all of it, which also names the key objects, so
/// that it shows whether a read that failed left the very same object; and what reading keeps to the bit. The
/// latter leaves out handles that reading by its rules computes anew: automatic ones and those under a
/// constraint.
namespace EditableState {

inline std::string all(const ZT::EditableMotionCurveKey& key) {
    return Snapshot::of(key).toStdString();
}

inline std::string all(const ZT::EditableMotionCurve& curve) {
    return PlainState::of(curve.baseMotionCurve()) + '\n' + Snapshot::of(curve).toStdString();
}

inline std::string all(const ZT::EditableAnimationLayer& layer) {
    return layer.getActuatorName().toStdString() + (layer.isMute() ? " mute\n" : "\n") +
           all(*layer.getCurve());
}

inline std::string all(const ZT::EditableAnimation& animation) {
    std::string text;
    for (const ZT::EditableAnimationLayer* const layer : animation) {
        text += all(*layer) + '\n';
    }
    return text;
}

inline std::string kept(const ZT::EditableMotionCurveKey& key) {
    using VQ::Math::Position2D;
    using VQ::Math::Interpolation::InterpolationType;
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

inline std::string kept(const ZT::EditableMotionCurve& curve) {
    VQ::Animation::MotionCurve settings = curve.baseMotionCurve();
    settings.clear();
    std::string text = PlainState::of(settings);
    for (const auto element : curve) {
        text += '\n' + std::to_string(element.first) + ": " + kept(*element.second);
    }
    return text;
}

inline std::string kept(const ZT::EditableAnimationLayer& layer) {
    return layer.getActuatorName().toStdString() + (layer.isMute() ? " mute\n" : "\n") +
           kept(*layer.getCurve());
}

inline std::string kept(const ZT::EditableAnimation& animation) {
    std::string text;
    for (const ZT::EditableAnimationLayer* const layer : animation) {
        text += kept(*layer) + '\n';
    }
    return text;
}

} // namespace EditableState
