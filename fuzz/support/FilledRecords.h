#pragma once

#include "base/animation/Animation.h"
#include "fuzz/support/PlainKey.h"

/// Records with contents of their own, to see whether a read that fails leaves them alone.
namespace FilledRecords {

inline PlainKey key() {
    using VQ::Math::Interpolation::InterpolationType;
    PlainKey result;
    result.value = 1.5F;
    result.leftTangentType = InterpolationType::bezier;
    result.leftTangentOffset = {-2.0F, 0.25F};
    result.rightTangentType = InterpolationType::linear;
    result.rightTangentOffset = {3.0F, -0.0F};
    return result;
}

inline VQ::Animation::MotionCurve curve() {
    VQ::Animation::MotionCurve result;
    for (const unsigned int frame : {0U, 5U, 4294967295U}) {
        result.insert(frame, new VQ::Math::Interpolation::Key(key()));
    }
    result.setValueLimits({-1.0F, 2.0F});
    return result;
}

inline VQ::Animation::AnimationLayer layer() {
    VQ::Animation::AnimationLayer result;
    *result.curve = curve();
    result.actuatorName = "elbow";
    result.mute = true;
    return result;
}

inline VQ::Animation::Animation animation() {
    VQ::Animation::Animation result;
    result.push_back(new VQ::Animation::AnimationLayer(layer()));
    result.push_back(new VQ::Animation::AnimationLayer);
    return result;
}

} // namespace FilledRecords
