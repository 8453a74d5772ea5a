#pragma once

#include "CommandHarness.h"
#include "base/math/FloatBits.h"

#include <rapidcheck.h>

#include <limits>

/// Random keys and what they are made of.
namespace Harness {

inline rc::Gen<bool> yesOrNo() {
    return rc::gen::element(false, true);
}

/// Without automatic tangents no handle depends on a tolerance.
enum class Automatic { no, yes };

inline rc::Gen<Type> anyType(Automatic automatic) {
    return automatic == Automatic::yes
               ? rc::gen::element(Type::constant, Type::linear, Type::bezier, Type::bezierAuto)
               : rc::gen::element(Type::constant, Type::linear, Type::bezier);
}

inline rc::Gen<Side> anySide() {
    return rc::gen::element(Side::left, Side::right);
}

/// Mostly near each other, so that keys meet; sometimes at the far end.
inline rc::Gen<unsigned int> anyFrame() {
    return rc::gen::weightedOneOf<unsigned int>(
        {{30, rc::gen::inRange(0U, 30U)},
         {1, rc::gen::element(16777217U, 4294967290U, 4294967294U, 4294967295U)}});
}

/// Steps of a half and the extremes of every kind, but nothing so small that an automatic handle might keep
/// two states of it apart only by its tolerance.
inline rc::Gen<float> anyValue() {
    using Limits = std::numeric_limits<float>;
    return rc::gen::weightedOneOf<float>(
        {{6, rc::gen::map(rc::gen::inRange(-10, 10), [](int half) { return static_cast<float>(half) / 2; })},
         {1, rc::gen::element(-0.0F, Limits::max(), Limits::lowest(), Limits::infinity(), -Limits::infinity(),
                              Limits::quiet_NaN(), VQ::Math::floatFromBits(0xffc12345U),
                              VQ::Math::floatFromBits(0x7f800001U), 1e30F, -16777216.0F)}});
}

inline rc::Gen<float> anyCoordinate() {
    return rc::gen::weightedOneOf<float>(
        {{6, anyValue()}, {1, rc::gen::element(1e-40F, -1e-20F, 0.1F, 1.0F / 3.0F)}});
}

inline Key* anyKey(Automatic automatic) {
    Record record;
    record.value = *anyValue();
    record.leftTangentType = *anyType(automatic);
    record.leftTangentOffset.x = *anyCoordinate();
    record.leftTangentOffset.y = *anyCoordinate();
    record.rightTangentType = *anyType(automatic);
    record.rightTangentOffset.x = *anyCoordinate();
    record.rightTangentOffset.y = *anyCoordinate();
    auto* const key = new Key(record);
    key->setSmooth(*rc::gen::weightedElement<bool>({{3, false}, {1, true}}));
    key->setSymmetrical(*rc::gen::weightedElement<bool>({{3, false}, {1, true}}));
    if (*yesOrNo()) { // A flag without effect.
        key->setTangentType(*anySide(), *anyType(automatic));
    }
    return key;
}

} // namespace Harness
