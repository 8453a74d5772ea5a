#include "base/animation/KeySerialization.h"
#include "fuzz/support/FilledRecords.h"
#include "fuzz/support/TreeGrammar.h"
#include "fuzz/support/TreeLaws.h"

#include <optional>
#include <stdexcept>

namespace {

using VQ::Math::Interpolation::Key;

std::optional<Key> read(const boost::property_tree::ptree& tree) {
    try {
        return VQ::Animation::deserializeMotionCurveKey(tree);
    } catch (const std::invalid_argument& error) {
        requireLaw(*error.what() != '\0', "a tree that cannot be read has a problem");
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const boost::property_tree::ptree tree = treeFromBytes(bytes);
    const std::optional<Key> key = read(tree);
    if (key) {
        const std::optional<Key> again = read(VQ::Animation::serialize(*key));
        requireLaw(again.has_value(), "what was written can be read");
        requireSame(PlainState::of(*again), PlainState::of(*key), "a plain key comes back bit by bit");
    }
    ZT::EditableMotionCurveKey filled(FilledRecords::key());
    TreeLaws::checkEditable(tree, filled, key.has_value());
    return 0;
}
