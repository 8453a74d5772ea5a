#pragma once

#include "base/TangentSide.h"
#include "tests/base/AnyFloat.h"

#include <rapidcheck.h>

#include <limits>
#include <string>
#include <vector>

/// What random animations and edits are made of: mostly frames and numbers near each other, so that keys meet
/// and stand in each other's way, and everything else that a frame or a float can be among them.
///
/// Each is drawn inside a running property. All but the sizes are drawn alike in small and large cases.
namespace Draw {

using Record = VQ::Math::Interpolation::Key;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;

/// Whether handles may be automatic: without those, no bit of a state depends on their tolerance.
enum class Automatic { no, yes };

template <class Integer>
Integer below(Integer count) {
    return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<Integer>(0, count));
}

/// True once in so many times.
inline bool rarely(int times) {
    return below(times) == times - 1;
}
inline bool yesOrNo() {
    return rarely(2);
}

/// From 0 to @p greatest, growing with the cases.
inline int size(int greatest) {
    return *rc::gen::inRange(0, greatest + 1);
}

template <class Item>
Item oneOf(const std::vector<Item>& items) {
    return items[below(items.size())];
}

inline unsigned int frame() {
    static const std::vector<unsigned int> far{16777216U,   16777217U,   0x7fffffffU, 0x80000000U,
                                               0xfffffff0U, 0xfffffffeU, 0xffffffffU};
    const int kind = below(24);
    return kind < 22 ? below(70U) : kind == 22 ? oneOf(far) : *Records::anyFrame();
}

/// Some of them as near each other as automatic handles may be to their formula.
inline float number() {
    switch (below(10)) {
    case 6:
        return static_cast<float>(below(41) - 20) * 0.0001F;
    case 7:
        return static_cast<float>(below(61) - 30) / 3.0F;
    case 8:
        return oneOf(Records::remarkableFloats());
    case 9:
        return *Records::anyFloat();
    default:
        return static_cast<float>(below(41)) / 2.0F - 10.0F;
    }
}

/// Where a dragged key is to go: positions between frames and past all of them too.
inline double position() {
    static const std::vector<double> wild{
        -1.0,  -0.5,   -70.25,       4294967295.0,
        1e300, -1e300, 4294967298.5, std::numeric_limits<double>::infinity(),
        -1e19, 9.3e18, 65.999,       std::numeric_limits<double>::quiet_NaN()};
    const int kind = below(20);
    return kind == 19 ? oneOf(wild) : kind >= 16 ? 0.25 * below(280) : static_cast<double>(frame());
}

inline Type type(Automatic automatic = Automatic::yes) {
    return static_cast<Type>(below(automatic == Automatic::yes ? 4 : 3));
}

inline Side side() {
    return static_cast<Side>(below(2));
}

inline VQ::Math::Position2D handle() {
    const float x = number();
    return {x, number()};
}

inline Record record(Automatic automatic = Automatic::yes) {
    Record result;
    result.value = number();
    result.leftTangentType = type(automatic);
    result.rightTangentType = type(automatic);
    // Automatic handles are computed anew anyway.
    result.leftTangentOffset =
        result.leftTangentType == Type::bezierAuto ? result.leftTangentOffset : handle();
    result.rightTangentOffset =
        result.rightTangentType == Type::bezierAuto ? result.rightTangentOffset : handle();
    return result;
}

/// Characters of every length in UTF-8, and those that XML has to hide.
inline std::string name() {
    static const std::vector<std::string> pieces{"a",
                                                 "left",
                                                 " ",
                                                 "\t",
                                                 "\n",
                                                 "\r",
                                                 "<",
                                                 ">",
                                                 "&",
                                                 "\"",
                                                 "'",
                                                 "]]>",
                                                 "&#65;",
                                                 "-->",
                                                 "\xc3\xaa",
                                                 "\xe8\x85\x95",
                                                 "\xf0\x9f\xa6\xbe"};
    std::string result;
    for (int count = size(6); count > 0; --count) {
        result += oneOf(pieces);
    }
    return result;
}

} // namespace Draw
