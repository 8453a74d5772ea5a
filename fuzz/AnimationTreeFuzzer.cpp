#include "fuzz/support/FileLaws.h"
#include "fuzz/support/FilledRecords.h"
#include "fuzz/support/TreeLaws.h"

#include <stdexcept>

namespace {

/// Trees hold names of any bytes, files do not: they are refused then, and never come back as other names.
void checkSaving(const VQ::Animation::Animation& animation) {
    try {
        FileLaws::requireRoundTrip(animation);
    } catch (const std::runtime_error& error) {
        requireLaw(std::string(error.what()).compare(0, 6, "layer ") == 0, "an error names the layer",
                   error.what());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    VQ::Animation::Animation animation;
    if (animation.deserialize(
            TreeLaws::check<ZT::EditableAnimation>(data, size, FilledRecords::animation()))) {
        checkSaving(animation);
    }
    return 0;
}
