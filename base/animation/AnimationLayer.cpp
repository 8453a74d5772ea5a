#include "base/animation/AnimationLayer.h"

#include "base/animation/TreeItems.h"

#include <boost/property_tree/ptree.hpp>

#include <stdexcept>
#include <utility>

namespace VQ::Animation {

using TreeItems::Tree;

AnimationLayer::AnimationLayer()
    : curve(std::make_unique<MotionCurve>()) {}

AnimationLayer::AnimationLayer(const AnimationLayer& other)
    : curve(other.curve ? std::make_unique<MotionCurve>(*other.curve) : nullptr)
    , actuatorName(other.actuatorName)
    , mute(other.mute) {}

AnimationLayer::AnimationLayer(AnimationLayer&& other) noexcept = default;

AnimationLayer& AnimationLayer::operator=(AnimationLayer other) noexcept {
    std::swap(curve, other.curve);
    std::swap(actuatorName, other.actuatorName);
    std::swap(mute, other.mute);
    return *this;
}

AnimationLayer::~AnimationLayer() = default;

MotionCurve* AnimationLayer::createCurve() const {
    return new MotionCurve;
}

Tree AnimationLayer::serialize() const {
    Tree tree;
    TreeItems::putText(tree, "name", actuatorName);
    if (mute) {
        TreeItems::putText(tree, "mute", "true");
    }
    TreeItems::append(tree, "curve", curve ? curve->serialize() : MotionCurve().serialize());
    return tree;
}

void AnimationLayer::_read(const Tree& tree) {
    std::string name = TreeItems::getText(tree, "name");
    const bool isMute = TreeItems::getOptionalFlag(tree, "mute");
    const Tree& curveTree = TreeItems::getChild(tree, "curve");
    std::unique_ptr<MotionCurve> fresh(createCurve());
    if (!fresh->deserialize(curveTree)) {
        throw std::invalid_argument("curve: " + MotionCurve::problemIn(curveTree));
    }
    curve.swap(fresh);
    actuatorName.swap(name);
    mute = isMute;
}

bool AnimationLayer::deserialize(const Tree& tree) {
    try {
        _read(tree);
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

std::string AnimationLayer::problemIn(const Tree& tree) {
    try {
        AnimationLayer()._read(tree);
        return {};
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

} // namespace VQ::Animation
