#include "document/SegmentDivision.h"

#include "base/math/Narrowing.h"

#include <cmath>

namespace Editor {

using VQ::Math::Position2D;
using VQ::Math::toFloat;
using VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Interpolation::Key;

namespace {

struct Point {
    double x;
    double y;
};

Point operator+(const Point& a, const Point& b) {
    return {a.x + b.x, a.y + b.y};
}

Point operator-(const Point& a, const Point& b) {
    return {a.x - b.x, a.y - b.y};
}

Point between(const Point& a, const Point& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

Position2D toOffset(const Point& point) {
    return {toFloat(point.x), toFloat(point.y)};
}

// The handle as it is drawn, by the rules of evaluateSegment(): in frames and value units.
Point drawnHandle(InterpolationType type, const Position2D& offset, const Point& chord) {
    if (type == InterpolationType::linear) {
        return {chord.x / 3.0, chord.y / 3.0};
    }
    if (!std::isfinite(offset.x) || !std::isfinite(offset.y)) {
        return {0.0, 0.0};
    }
    const double part = double{offset.x} / chord.x;
    if (part <= 0.0) {
        return {0.0, double{offset.y}};
    }
    return part <= 1.0 ? Point{double{offset.x}, double{offset.y}} : Point{chord.x, double{offset.y} / part};
}

// As often halved as a double can tell.
double parameterAt(double x, double x1, double x2, double x3) {
    double low = 0.0;
    double high = 1.0;
    for (int halving = 0; halving < 53; ++halving) {
        const double t = (low + high) * 0.5;
        const double s = 1.0 - t;
        (3.0 * s * t * (s * x1 + t * x2) + t * t * t * x3 < x ? low : high) = t;
    }
    return (low + high) * 0.5;
}

} // namespace

// De Casteljau: the points half-way, as it were, between the controls are the controls of the two parts.
SegmentDivision divideSegment(unsigned int leftFrame, const Key& left, unsigned int rightFrame,
                              const Key& right, unsigned int frame) {
    const Point begin{0.0, double{left.value}};
    const Point end{static_cast<double>(rightFrame) - static_cast<double>(leftFrame), double{right.value}};
    const Point chord = end - begin;
    const Point first = begin + drawnHandle(left.rightTangentType, left.rightTangentOffset, chord);
    const Point second =
        end + drawnHandle(right.leftTangentType, right.leftTangentOffset, Point{-chord.x, -chord.y});
    const double t =
        parameterAt(static_cast<double>(frame) - static_cast<double>(leftFrame), first.x, second.x, end.x);

    const Point a = between(begin, first, t);
    const Point b = between(first, second, t);
    const Point c = between(second, end, t);
    const Point d = between(a, b, t);
    const Point e = between(b, c, t);
    const Point middle = between(d, e, t);

    SegmentDivision division;
    division.key.value = toFloat(middle.y);
    division.key.leftTangentType = InterpolationType::bezier;
    division.key.leftTangentOffset = toOffset(d - middle);
    division.key.rightTangentType = InterpolationType::bezier;
    division.key.rightTangentOffset = toOffset(e - middle);
    division.leftsHandle = toOffset(a - begin);
    division.rightsHandle = toOffset(c - end);
    return division;
}

} // namespace Editor
