#include "document/BvhImporter.h"
#include "fuzz/support/FileLaws.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <stdexcept>

namespace {

using VQ::Animation::Animation;

std::optional<Animation> import(const std::string& text) {
    std::istringstream stream(text);
    try {
        return Editor::BvhImporter(stream).read();
    } catch (const std::runtime_error& error) {
        FileLaws::requirePlace(error.what());
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
    FileLaws::requireRoundTrip(animation);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const std::optional<Animation> animation = import(std::string(data, data + size))) {
        check(*animation);
    }
    return 0;
}
