#pragma once

#include "base/animation/Animation.h"
#include "base/math/FloatBits.h"

#include <sstream>
#include <string>

/// The whole state of plain records as text, floats by their bits; written without the library's own trees,
/// which are what is tested.
namespace PlainState {

inline std::string bits(float number) {
    return std::to_string(VQ::Math::floatBits(number));
}

inline std::string of(const VQ::Math::Interpolation::Key& key) {
    std::ostringstream text;
    text << bits(key.value);
    text << " left " << static_cast<int>(key.leftTangentType) << ' ' << bits(key.leftTangentOffset.x) << ' '
         << bits(key.leftTangentOffset.y);
    text << " right " << static_cast<int>(key.rightTangentType) << ' ' << bits(key.rightTangentOffset.x)
         << ' ' << bits(key.rightTangentOffset.y);
    return text.str();
}

inline std::string of(const VQ::Animation::MotionCurve& curve) {
    std::ostringstream text;
    text << "curve " << curve.getTimeUnit().count() << ' ' << bits(curve.getValueLimits().first) << ' '
         << bits(curve.getValueLimits().second) << ' ' << bits(curve.getMaxAbsoluteDerivative());
    for (const auto& element : curve) {
        text << '\n' << element.first << ": " << of(*element.second);
    }
    return text.str();
}

inline std::string of(const VQ::Animation::AnimationLayer& layer) {
    return "layer " + std::to_string(layer.actuatorName.size()) + ' ' + layer.actuatorName +
           (layer.mute ? " mute\n" : "\n") + of(*layer.curve);
}

inline std::string of(const VQ::Animation::Animation& animation) {
    std::string text;
    for (const VQ::Animation::AnimationLayer& layer : animation) {
        text += of(layer) + '\n';
    }
    return text;
}

} // namespace PlainState
