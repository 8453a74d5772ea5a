#pragma once

#include "base/animation/Animation.h"

#include <string>
#include <utility>
#include <vector>

/// Layers of these names, each with one key, at this frame.
inline VQ::Animation::Animation
plainAnimation(const std::vector<std::pair<std::string, unsigned int>>& layers) {
    VQ::Animation::Animation animation;
    for (const auto& [name, lastFrame] : layers) {
        auto* const layer = new VQ::Animation::AnimationLayer;
        layer->actuatorName = name;
        layer->curve->insert(lastFrame, new VQ::Math::Interpolation::Key);
        animation.push_back(layer);
    }
    return animation;
}
