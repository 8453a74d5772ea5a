#include "library/LibraryCurve.h"

#include <memory>

namespace Bench {

VQ::Math::Interpolation::Key recordOf(std::size_t i) {
    VQ::Math::Interpolation::Key record;
    record.value = waveValue(i);
    return record;
}

VQ::Animation::MotionCurve plainCurve(std::size_t n) {
    VQ::Animation::MotionCurve curve;
    for (std::size_t i = 0; i < n; ++i) {
        auto key = std::make_unique<VQ::Math::Interpolation::Key>(recordOf(i));
        curve.insert(gapFrame(i), key.get());
        static_cast<void>(key.release()); // The curve owns it now.
    }
    return curve;
}

LibraryCurve::LibraryCurve(const Setting& setting, FrameOf frameOf)
    : keys(allocateKeys(setting, [](std::size_t) { return new Key; })) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keys[i]->setValue(waveValue(i));
        curve.insert(frameOf(i), keys[i]);
    }
    curve.updateBezierAutoTangents();
}

Curve::KeyPosMap LibraryCurve::positions(std::size_t stride) const {
    return targets([](unsigned int frame) { return static_cast<double>(frame); }, 0.0, stride);
}

Curve::KeyPosMap LibraryCurve::targets(const std::function<double(unsigned int)>& frameOf, double rise,
                                       std::size_t stride) const {
    Curve::KeyPosMap map;
    for (std::size_t i = 0; i < keys.size(); i += stride) {
        map.insert(keys[i], {frameOf(ZT::index(keys[i])), double{keys[i]->getValue()} + rise});
    }
    return map;
}

Curve::KeysIndexMap LibraryCurve::frames(unsigned int by) const {
    Curve::KeysIndexMap map;
    for (Key* const key : keys) {
        map.insert(key, ZT::index(key) + by);
    }
    return map;
}

QSet<Key*> LibraryCurve::keySet() const {
    return {keys.begin(), keys.end()};
}

QMultiMap<Key*, ZT::TangentSide> LibraryCurve::bothSides() const {
    QMultiMap<Key*, ZT::TangentSide> sides;
    for (Key* const key : keys) {
        sides.insert(key, ZT::TangentSide::right);
        sides.insert(key, ZT::TangentSide::left);
    }
    return sides;
}

} // namespace Bench
