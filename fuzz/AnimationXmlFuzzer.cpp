#include "base/animation/AnimationXml.h"
#include "fuzz/support/Law.h"
#include "fuzz/support/PlainState.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using VQ::Animation::Animation;

constexpr int mostDepth = 65;

/// Whether XML can hold the names of all layers. Its writer refuses no character, so that what comes back is
/// another name.
bool namesFitXml(const Animation& animation) {
    return std::all_of(animation.begin(), animation.end(), [](const VQ::Animation::AnimationLayer& layer) {
        const std::string& name = layer.actuatorName;
        return std::none_of(name.begin(), name.end(), [](char letter) { return letter == '\0'; });
    });
}

/// Elements within elements. A function that calls itself, as those that destroy the tree do.
int depthOf(const boost::property_tree::ptree& tree) {
    int deepest = 0;
    for (const auto& [name, child] : tree) {
        deepest = std::max(deepest, name == "<xmlattr>" ? 0 : depthOf(child));
    }
    return deepest + 1;
}

void checkRoundTrip(const Animation& animation) {
    std::stringstream stream;
    VQ::Animation::writeAnimationXml(stream, animation.serialize());
    Animation again;
    requireLaw(again.deserialize(VQ::Animation::readAnimationXml(stream)), "what was written can be read",
               stream.str());
    requireSame(PlainState::of(again), PlainState::of(animation), "an animation comes back bit by bit");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream stream(std::string(data, data + size));
    boost::property_tree::ptree tree;
    try {
        tree = VQ::Animation::readAnimationXml(stream);
    } catch (const std::runtime_error& error) {
        requireLaw(*error.what() != '\0', "a file that cannot be read has a problem");
        return 0;
    }
    requireLaw(depthOf(tree) <= mostDepth, "elements are nested at most 64 deep and an empty one");
    Animation animation;
    const bool isReadable = animation.deserialize(tree);
    requireLaw(isReadable == Animation::problemIn(tree).empty(), "a tree that cannot be read has a problem");
    if (isReadable && namesFitXml(animation)) {
        checkRoundTrip(animation);
    }
    return 0;
}
