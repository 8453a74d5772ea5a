#include "base/animation/KeySerialization.h"

#include "base/animation/TreeItems.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace VQ::Animation {

using Math::Position2D;
using Math::Interpolation::InterpolationType;
using Math::Interpolation::Key;
using TreeItems::Tree;

namespace {

Tree writeTangent(InterpolationType type, const Position2D& offset) {
    Tree tree;
    TreeItems::putType(tree, "type", type);
    TreeItems::putNumber(tree, "dx", offset.x);
    TreeItems::putNumber(tree, "dy", offset.y);
    return tree;
}

void readTangent(const Tree& key, const char* side, InterpolationType& type, Position2D& offset) {
    const Tree& tree = TreeItems::getChild(key, side);
    try {
        type = TreeItems::getType(tree, "type");
        offset = Position2D(TreeItems::getNumber(tree, "dx"), TreeItems::getNumber(tree, "dy"));
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(std::string(side) + " tangent: " + error.what());
    }
}

} // namespace

Tree serialize(const Key& key) {
    Tree tree;
    TreeItems::putNumber(tree, "value", key.value);
    TreeItems::append(tree, "left", writeTangent(key.leftTangentType, key.leftTangentOffset));
    TreeItems::append(tree, "right", writeTangent(key.rightTangentType, key.rightTangentOffset));
    return tree;
}

Key deserializeMotionCurveKey(const Tree& tree) {
    Key key;
    key.value = TreeItems::getNumber(tree, "value");
    readTangent(tree, "left", key.leftTangentType, key.leftTangentOffset);
    readTangent(tree, "right", key.rightTangentType, key.rightTangentOffset);
    return key;
}

} // namespace VQ::Animation
