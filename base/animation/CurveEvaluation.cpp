#include "base/animation/CurveEvaluation.h"

#include "base/animation/MotionCurve.h"
#include "base/math/Narrowing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace VQ::Animation {

using Math::Position2D;
using Math::Interpolation::InterpolationType;
using Math::Interpolation::Key;

namespace {

struct Point {
    double x;
    double y;
};

// The handle in the direction of the segment, x as a fraction of its length; y in value units.
Point handle(InterpolationType type, const Position2D& offset, double direction, double length, double rise) {
    constexpr double third = 1.0 / 3.0;
    if (type == InterpolationType::linear) {
        return {third, direction * rise * third};
    }
    if (!std::isfinite(offset.x) || !std::isfinite(offset.y)) {
        return {0.0, 0.0};
    }
    const double x = direction * double{offset.x} / length;
    if (x <= 0.0) {
        return {0.0, double{offset.y}};
    }
    return x <= 1.0 ? Point{x, double{offset.y}} : Point{1.0, double{offset.y} / x};
}

// Bernstein form with end points 0 and 1 in x.
double cubic(double p0, double p1, double p2, double p3, double t) {
    const double s = 1.0 - t;
    return s * s * s * p0 + 3.0 * s * t * (s * p1 + t * p2) + t * t * t * p3;
}

// With both inner controls in [0, 1] the cubic's x never falls along t, so that halving the bracket always
// keeps the sought parameter inside it.
double parameterAt(double x, double x1, double x2) {
    double low = 0.0;
    double high = 1.0;
    // x changes at most three times as fast as t: a bracket of 2^-53 finds the frame within 4e-16 of the
    // segment.
    for (int halving = 0; halving < 53; ++halving) {
        const double middle = (low + high) * 0.5;
        (cubic(0.0, x1, x2, 1.0, middle) < x ? low : high) = middle;
    }
    return (low + high) * 0.5;
}

} // namespace

float evaluateSegment(unsigned int leftFrame, const Key& left, unsigned int rightFrame, const Key& right,
                      double frame) {
    if (std::isnan(frame)) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    if (frame >= rightFrame) {
        return right.value;
    }
    if (frame <= leftFrame || left.rightTangentType == InterpolationType::constant ||
        right.leftTangentType == InterpolationType::constant) {
        return left.value;
    }
    const double length = static_cast<double>(rightFrame) - static_cast<double>(leftFrame);
    const double rise = double{right.value} - double{left.value};
    const double x = (frame - static_cast<double>(leftFrame)) / length;
    if (left.rightTangentType == InterpolationType::linear &&
        right.leftTangentType == InterpolationType::linear) {
        return Math::toFloat(double{left.value} + rise * x);
    }
    const Point first = handle(left.rightTangentType, left.rightTangentOffset, 1.0, length, rise);
    const Point second = handle(right.leftTangentType, right.leftTangentOffset, -1.0, length, rise);
    const double t = parameterAt(x, first.x, 1.0 - second.x);
    return Math::toFloat(cubic(double{left.value}, double{left.value} + first.y,
                               double{right.value} + second.y, double{right.value}, t));
}

float evaluate(const MotionCurve& curve, double frame) {
    if (std::isnan(frame)) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    if (curve.empty()) {
        return 0.0F;
    }
    const auto first = curve.begin();
    if (frame <= first->first) {
        return first->second->value;
    }
    constexpr auto lastFrame = double{std::numeric_limits<unsigned int>::max()};
    const auto left = curve.findAtOrBefore(static_cast<unsigned int>(std::min(frame, lastFrame)));
    auto right = left;
    ++right;
    if (right == curve.end()) {
        return left->second->value;
    }
    return evaluateSegment(left->first, *left->second, right->first, *right->second, frame);
}

} // namespace VQ::Animation
