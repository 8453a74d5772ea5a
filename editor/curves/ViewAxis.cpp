#include "curves/ViewAxis.h"

#include "document/Frames.h"

#include <cmath>
#include <limits>

namespace Editor {

ViewAxis::ViewAxis(double narrowest, double widest, double lowest, double highest)
    : _narrowest(narrowest)
    , _widest(widest)
    , _lowest(lowest)
    , _highest(highest) {}

ViewAxis* ViewAxis::forFrames(QObject* parent) {
    constexpr double lastFrame = lastPossibleFrame;
    auto* const axis = new ViewAxis(4.0, lastFrame, -0.1 * lastFrame, 1.1 * lastFrame);
    axis->setParent(parent);
    return axis;
}

ViewAxis* ViewAxis::forValues(QObject* parent) {
    constexpr double largest = std::numeric_limits<float>::max();
    auto* const axis = new ViewAxis(1e-30, 4.0 * largest, -4.0 * largest, 4.0 * largest);
    axis->setParent(parent);
    return axis;
}

void ViewAxis::show(double first, double last) {
    if (!std::isfinite(first) || !std::isfinite(last)) {
        return;
    }
    const double middle = std::clamp(0.5 * first + 0.5 * last, _lowest, _highest);
    const double span = _limited(last - first, middle);
    const double newFirst = std::max(_lowest, std::min(middle - 0.5 * span, _highest - span));
    if (newFirst != _first || newFirst + span != _last) {
        _first = newFirst;
        _last = newFirst + span;
        Q_EMIT changed();
    }
}

// What the limits take from the span must not shift the position, too.
void ViewAxis::zoom(double factor, double at) {
    if (std::isfinite(factor) && std::isfinite(at)) {
        const double possible = _limited(span() * factor, 0.5 * _first + 0.5 * _last) / span();
        show(at + (_first - at) * possible, at + (_last - at) * possible);
    }
}

void ViewAxis::pan(double distance) {
    show(_first + distance, _last + distance);
}

double ViewAxis::tickStep(int length, double apart) const {
    return niceStep(span() / std::max(1, length) * apart);
}

double ViewAxis::niceStep(double least) {
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least) {
            return factor * power;
        }
    }
    return 10.0 * power;
}

// Below the distance of neighbouring doubles the two ends would fall together.
double ViewAxis::_limited(double span, double around) const {
    const double least = std::max(_narrowest, std::abs(around) * 1e-9);
    return std::clamp(span, least, std::max(least, _widest));
}

} // namespace Editor
