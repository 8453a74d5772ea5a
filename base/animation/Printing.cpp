#include "base/animation/Printing.h"

#include "base/animation/Animation.h"

#include <array>
#include <charconv>
#include <ostream>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t mostFrames = 8;

// As the stream is set up, numbers would be rounded, and look otherwise under other locales.
std::string_view shortest(float number, std::array<char, 32>& buffer) {
    const char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

void print(std::ostream& stream, float number) {
    std::array<char, 32> buffer{};
    stream << shortest(number, buffer);
}

void printCount(std::ostream& stream, std::size_t count, const char* what) {
    stream << std::to_string(count) << ' ' << what << (count == 1 ? "" : "s");
}

} // namespace

namespace VQ::Math {

std::ostream& operator<<(std::ostream& stream, const Position2D& point) {
    stream << '(';
    print(stream, point.x);
    stream << ", ";
    print(stream, point.y);
    return stream << ')';
}

} // namespace VQ::Math

namespace VQ::Math::Interpolation {

std::ostream& operator<<(std::ostream& stream, InterpolationType type) {
    switch (type) {
    case InterpolationType::constant:
        return stream << "constant";
    case InterpolationType::linear:
        return stream << "linear";
    case InterpolationType::bezier:
        return stream << "bezier";
    case InterpolationType::bezierAuto:
        return stream << "bezier auto";
    }
    return stream << "type " << std::to_string(static_cast<int>(type));
}

std::ostream& operator<<(std::ostream& stream, const Key& key) {
    print(stream, key.value);
    return stream << ", left " << key.leftTangentType << ' ' << key.leftTangentOffset << ", right "
                  << key.rightTangentType << ' ' << key.rightTangentOffset;
}

} // namespace VQ::Math::Interpolation

namespace VQ::Animation {

std::ostream& operator<<(std::ostream& stream, const MotionCurve& curve) {
    printCount(stream, curve.size(), "key");
    std::size_t shown = 0;
    for (auto key = curve.begin(); key != curve.end() && shown < mostFrames; ++key, ++shown) {
        stream << (shown == 0 ? " at " : " ") << std::to_string(key->first);
    }
    return curve.size() > shown ? stream << " ..." : stream;
}

std::ostream& operator<<(std::ostream& stream, const AnimationLayer& layer) {
    stream << "layer \"" << layer.actuatorName << '"' << (layer.mute ? ", muted" : "") << ", ";
    return layer.curve ? stream << *layer.curve : stream << "no curve";
}

std::ostream& operator<<(std::ostream& stream, const Animation& animation) {
    printCount(stream, animation.size(), "layer");
    const char* separator = ": ";
    for (const AnimationLayer& layer : animation) {
        stream << separator << layer.actuatorName;
        separator = " ";
    }
    return stream;
}

} // namespace VQ::Animation

namespace ZT {

std::ostream& operator<<(std::ostream& stream, TangentSide side) {
    switch (side) {
    case TangentSide::left:
        return stream << "left";
    case TangentSide::right:
        return stream << "right";
    }
    return stream << "side " << std::to_string(static_cast<int>(side));
}

} // namespace ZT
