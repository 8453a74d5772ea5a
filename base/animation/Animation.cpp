#include "base/animation/Animation.h"

#include "base/animation/TreeItems.h"

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>

namespace VQ::Animation {

using TreeItems::Tree;

Animation::Animation() = default;

Animation::Animation(const Animation& other) {
    for (const AnimationLayer& layer : other) {
        // Copied as plain records, whatever the other animation's layers are: cloning is not used.
        push_back(new AnimationLayer(layer));
    }
}

Animation::Animation(Animation&& other) noexcept {
    _layers.swap(other._layers);
}

Animation& Animation::operator=(Animation other) noexcept {
    _layers.swap(other._layers);
    return *this;
}

// A layer that dies finds the list empty, not with dead layers in it.
Animation::~Animation() {
    Animation::clear();
}

Animation::iterator Animation::begin() {
    return _layers.begin();
}
Animation::iterator Animation::end() {
    return _layers.end();
}
Animation::const_iterator Animation::begin() const {
    return _layers.begin();
}
Animation::const_iterator Animation::end() const {
    return _layers.end();
}
std::size_t Animation::size() const noexcept {
    return _layers.size();
}
bool Animation::empty() const noexcept {
    return _layers.empty();
}

Animation::iterator Animation::find(const std::string& actuatorName) {
    return std::find_if(begin(), end(),
                        [&](const AnimationLayer& layer) { return layer.actuatorName == actuatorName; });
}

Animation::const_iterator Animation::find(const std::string& actuatorName) const {
    return std::find_if(begin(), end(),
                        [&](const AnimationLayer& layer) { return layer.actuatorName == actuatorName; });
}

Animation::iterator Animation::insert(iterator position, AnimationLayer* layer) {
    return _layers.insert(position, layer);
}

void Animation::push_back(AnimationLayer* layer) {
    _layers.push_back(layer);
}

Animation::iterator Animation::erase(iterator position) {
    // The layer leaves the list before it dies: whoever watches its end finds the animation without it.
    const auto offset = position - begin();
    const auto dying = release(position);
    return begin() + offset;
}

std::unique_ptr<AnimationLayer> Animation::release(iterator position) {
    return std::unique_ptr<AnimationLayer>(position == end() ? nullptr : _layers.release(position).release());
}

void Animation::clear() noexcept {
    Layers dying;
    dying.swap(_layers);
}

void Animation::replace(iterator position, AnimationLayer* layer) {
    _layers.replace(position, layer);
}

AnimationLayer* Animation::createLayer() const {
    return new AnimationLayer;
}

Tree Animation::serialize() const {
    Tree tree;
    for (const AnimationLayer& layer : *this) {
        TreeItems::append(tree, "layer", layer.serialize());
    }
    return tree;
}

void Animation::_read(const Tree& tree) {
    Layers fresh;
    for (const auto& [name, node] : tree) {
        if (name != "layer") {
            continue;
        }
        fresh.push_back(createLayer());
        if (!fresh.back().deserialize(node)) {
            throw std::invalid_argument("layer " + std::to_string(fresh.size()) + ": " +
                                        AnimationLayer::problemIn(node));
        }
    }
    _layers.swap(fresh);
}

bool Animation::deserialize(const Tree& tree) {
    try {
        _read(tree);
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

std::string Animation::problemIn(const Tree& tree) {
    try {
        Animation()._read(tree);
        return {};
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

} // namespace VQ::Animation
