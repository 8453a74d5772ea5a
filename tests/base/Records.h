#pragma once

#include "base/animation/Animation.h"
#include "base/math/FloatBits.h"

#include <QString>
#include <QStringList>

#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <vector>

/// Plain records as text, floats by their bits, so that two states are compared exactly and a difference
/// reads like a diff; and the values that a record must keep.
namespace Records {

using Key = VQ::Math::Interpolation::Key;
using Type = VQ::Math::Interpolation::InterpolationType;
using VQ::Animation::Animation;
using VQ::Animation::AnimationLayer;
using VQ::Animation::MotionCurve;
using VQ::Animation::RationalSeconds;
using VQ::Math::Position2D;
using Tree = boost::property_tree::ptree;

/// Zeros, the smallest and largest of each kind, infinities, quiet and signalling NaNs with payloads, and
/// numbers whose decimal form is long.
inline const std::vector<float>& remarkableFloats() {
    static const std::vector<float> floats{
        0.0F,
        -0.0F,
        VQ::Math::floatFromBits(1),
        -VQ::Math::floatFromBits(1),
        VQ::Math::floatFromBits(0x007fffff),
        std::numeric_limits<float>::min(),
        std::numeric_limits<float>::max(),
        std::numeric_limits<float>::lowest(),
        std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity(),
        VQ::Math::floatFromBits(0x7fc00000),
        VQ::Math::floatFromBits(0xffc00000),
        VQ::Math::floatFromBits(0x7fc00001),
        VQ::Math::floatFromBits(0xffffffff),
        VQ::Math::floatFromBits(0x7f800001),
        VQ::Math::floatFromBits(0xffa5a5a5),
        0.1F,
        1.0F / 3.0F,
        -16777216.0F,
        1234567.875F,
        1e10F,
    };
    return floats;
}

inline Key makeKey(float value, Type left, Position2D leftOffset, Type right, Position2D rightOffset) {
    Key key;
    key.value = value;
    key.leftTangentType = left;
    key.leftTangentOffset = leftOffset;
    key.rightTangentType = right;
    key.rightTangentOffset = rightOffset;
    return key;
}

/// A key no field of which has its default.
inline Key unusualKey(float value = 1.5F) {
    return makeKey(value, Type::bezier, {-1.25F, 0.1F}, Type::linear, {2.5F, -7.0F});
}

inline QString of(float value) {
    return QString::number(static_cast<double>(value)) + '#' +
           QString::number(VQ::Math::floatBits(value), 16);
}

inline QString of(const Key& key) {
    return QString("%1 left %2 (%3, %4) right %5 (%6, %7)")
        .arg(of(key.value))
        .arg(static_cast<int>(key.leftTangentType))
        .arg(of(key.leftTangentOffset.x), of(key.leftTangentOffset.y))
        .arg(static_cast<int>(key.rightTangentType))
        .arg(of(key.rightTangentOffset.x), of(key.rightTangentOffset.y));
}

inline QString of(const MotionCurve& curve) {
    const auto unit = curve.getTimeUnit().count();
    QStringList lines{QString("unit %1/%2 limits %3 %4 derivative %5")
                          .arg(unit.numerator())
                          .arg(unit.denominator())
                          .arg(of(curve.getValueLimits().first), of(curve.getValueLimits().second))
                          .arg(of(curve.getMaxAbsoluteDerivative()))};
    for (const auto element : curve) {
        lines.append(QString("%1: %2").arg(element.first).arg(of(*element.second)));
    }
    return lines.join('\n');
}

inline QString of(const AnimationLayer& layer) {
    return QString("\"%1\"%2\n%3")
        .arg(QString::fromStdString(layer.actuatorName), layer.mute ? " mute" : "",
             layer.curve ? of(*layer.curve) : "no curve");
}

inline QString of(const Animation& animation) {
    QStringList layers;
    for (const AnimationLayer& layer : animation) {
        layers.append(of(layer));
    }
    return layers.join('\n');
}

inline QString address(const void* object) {
    return QString::number(reinterpret_cast<quintptr>(object), 16);
}

/// The state together with the identity of everything that is owned.
inline QString withIdentity(const MotionCurve& curve) {
    QStringList lines{of(curve)};
    for (const auto element : curve) {
        lines.append(address(element.second));
    }
    return lines.join('\n');
}

inline QString withIdentity(const AnimationLayer& layer) {
    return of(layer) + address(layer.curve.get()) + withIdentity(*layer.curve);
}

inline QString withIdentity(const Animation& animation) {
    QStringList lines;
    for (const AnimationLayer& layer : animation) {
        lines.append(address(&layer) + withIdentity(layer));
    }
    return lines.join('\n');
}

inline void fill(MotionCurve& curve, float value = 1.5F) {
    curve.setTimeUnit(RationalSeconds(boost::rational<int>(1001, 30000)));
    curve.setValueLimits({-1.5F, 2.5F});
    curve.setMaxAbsoluteDerivative(0.1F);
    curve.insert(0, new Key);
    curve.insert(7, new Key(unusualKey(value)));
    curve.insert(std::numeric_limits<unsigned int>::max(), new Key(unusualKey(-value)));
}

inline AnimationLayer makeLayer(const std::string& name, bool mute = false, float value = 1.5F) {
    AnimationLayer layer;
    layer.actuatorName = name;
    layer.mute = mute;
    fill(*layer.curve, value);
    return layer;
}

inline Animation makeAnimation() {
    Animation animation;
    animation.push_back(new AnimationLayer(makeLayer("arm", true)));
    animation.push_back(new AnimationLayer(makeLayer("t\xc3\xaate", false, 0.1F)));
    return animation;
}

/// While it lives, numbers of streams have a decimal comma and grouped digits.
class [[nodiscard]] CommaLocale {
public:
    CommaLocale()
        : _previous(std::locale::global(std::locale(std::locale::classic(), new Punctuation))) {}
    ~CommaLocale() { std::locale::global(_previous); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    struct Punctuation : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };

    std::locale _previous;
};

} // namespace Records
