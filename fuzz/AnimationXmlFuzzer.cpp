#include "fuzz/support/FileLaws.h"

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace {

using VQ::Animation::Animation;

/// Elements within elements. A function that calls itself, as those that destroy the tree do.
std::size_t depthOf(const boost::property_tree::ptree& tree) {
    std::size_t deepest = 0;
    for (const auto& [name, child] : tree) {
        deepest = std::max(deepest, name == "<xmlattr>" ? 0 : depthOf(child));
    }
    return deepest + 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream stream(std::string(data, data + size));
    boost::property_tree::ptree tree;
    try {
        tree = VQ::Animation::readAnimationXml(stream);
    } catch (const std::runtime_error& error) {
        FileLaws::requirePlace(error.what());
        return 0;
    }
    requireLaw(depthOf(tree) <= VQ::Animation::XmlLimits().depth + 1,
               "elements are nested as deep as the limit and an empty one");
    Animation animation;
    const bool isReadable = animation.deserialize(tree);
    requireLaw(isReadable == Animation::problemIn(tree).empty(), "a tree that cannot be read has a problem");
    if (isReadable) {
        FileLaws::requireRoundTrip(animation);
    }
    return 0;
}
