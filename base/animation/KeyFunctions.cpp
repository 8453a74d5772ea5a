#include "base/animation/KeyFunctions.h"

#include "base/animation/KeySerialization.h"

#include <stdexcept>

namespace VQ::Animation {

using Math::Interpolation::Key;

namespace {

void destroyPlain(Key* key) noexcept {
    delete key;
}
boost::property_tree::ptree writePlain(const Key& key) {
    return serialize(key);
}
bool readPlain(Key& key, const boost::property_tree::ptree& tree) {
    try {
        key = deserializeMotionCurveKey(tree);
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

} // namespace

const KeyFunctions KeyFunctions::plain{destroyPlain, writePlain, readPlain, nullptr};

} // namespace VQ::Animation
