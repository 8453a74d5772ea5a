#include "curves/ReadableColour.h"

#include <algorithm>
#include <cmath>

namespace Editor {

namespace {

constexpr double leastContrast = 3.0; // What WCAG 2 asks of lines and marks.

double luminanceOf(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

double contrastOf(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminanceOf(a), luminanceOf(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor readableOn(const QColor& ground, const QColor& colour) {
    const bool isLighter = contrastOf(ground, Qt::white) > contrastOf(ground, Qt::black);
    QColor readable = colour.toHsl();
    while (contrastOf(ground, readable) < leastContrast && readable.lightness() != (isLighter ? 255 : 0)) {
        const int lightness = std::clamp(readable.lightness() + (isLighter ? 5 : -5), 0, 255);
        readable.setHsl(readable.hslHue(), readable.hslSaturation(), lightness, colour.alpha());
    }
    return readable.toRgb();
}

QColor mixed(const QColor& a, const QColor& b, double part) {
    const auto between = [part](int from, int to) { return qRound(from + (to - from) * part); };
    return {between(a.red(), b.red()), between(a.green(), b.green()), between(a.blue(), b.blue())};
}

} // namespace Editor
