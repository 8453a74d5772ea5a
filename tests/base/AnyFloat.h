#pragma once

#include "Records.h"

#include <rapidcheck.h>

namespace Records {

/// Every float there is, by its bits, with the remarkable ones often among them.
inline rc::Gen<float> anyFloat() {
    const auto raw = rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<std::uint32_t>());
    return rc::gen::weightedOneOf<float>(
        {{3, rc::gen::map(raw, [](std::uint32_t value) { return VQ::Math::floatFromBits(value); })},
         {1, rc::gen::elementOf(remarkableFloats())}});
}

inline rc::Gen<float> anyFiniteFloat() {
    return rc::gen::suchThat(anyFloat(), [](float value) { return std::isfinite(value); });
}

inline rc::Gen<Key> anyKey() {
    return rc::gen::exec([] {
        const auto type = rc::gen::element(Type::constant, Type::linear, Type::bezier, Type::bezierAuto);
        const auto point = [] {
            const float x = *anyFloat();
            return Position2D(x, *anyFloat());
        };
        Key key;
        key.value = *anyFloat();
        key.leftTangentType = *type;
        key.leftTangentOffset = point();
        key.rightTangentType = *type;
        key.rightTangentOffset = point();
        return key;
    });
}

inline rc::Gen<unsigned int> anyFrame() {
    return rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<unsigned int>());
}

/// A real number from @p first up to @p last.
inline rc::Gen<double> between(double first, double last) {
    constexpr double steps = 4294967295.0;
    return rc::gen::map(anyFrame(),
                        [=](unsigned int step) { return first + (last - first) * (step / steps); });
}

} // namespace Records
