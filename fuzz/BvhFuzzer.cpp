#include "BvhImporter.h"
#include "fuzz/support/Law.h"
#include "fuzz/support/PlainState.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using VQ::Animation::Animation;

/// "line N: " and something behind it.
bool namesThePlace(const std::string& problem) {
    const std::string word = "line ";
    const std::size_t colon = problem.find(": ");
    return problem.compare(0, word.size(), word) == 0 && colon != std::string::npos && colon > word.size() &&
           std::all_of(problem.begin() + static_cast<std::ptrdiff_t>(word.size()),
                       problem.begin() + static_cast<std::ptrdiff_t>(colon),
                       [](unsigned char letter) { return std::isdigit(letter) != 0; }) &&
           problem.size() > colon + 2;
}

std::optional<Animation> import(const std::string& text) {
    std::istringstream stream(text);
    try {
        return BvhImporter(stream).read();
    } catch (const std::runtime_error& error) {
        requireLaw(namesThePlace(error.what()), "an error names its place", error.what());
        return std::nullopt;
    }
}

void check(const Animation& animation) {
    std::set<std::string> names;
    requireLaw(!animation.empty(), "an import gives layers");
    const std::size_t frames = animation.begin()->curve->size();
    for (const VQ::Animation::AnimationLayer& layer : animation) {
        requireLaw(names.insert(layer.actuatorName).second, "each layer has a name of its own",
                   layer.actuatorName);
        requireLaw(layer.curve->size() == frames, "each layer has a key at each frame", layer.actuatorName);
    }
    Animation again;
    requireLaw(again.deserialize(animation.serialize()), "what was imported can be saved and read");
    requireSame(PlainState::of(again), PlainState::of(animation), "an import comes back bit by bit");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const std::optional<Animation> animation = import(std::string(data, data + size))) {
        check(*animation);
    }
    return 0;
}
