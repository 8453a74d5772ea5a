#include "curves/CurveExtent.h"

#include "base/animation/CurveEvaluation.h"
#include "curves/ViewAxis.h"
#include "model/EditableMotionCurve.h"

#include <algorithm>
#include <cmath>

namespace Editor {

using VQ::Math::Interpolation::InterpolationType;

void CurveExtent::add(ZT::EditableMotionCurve& curve) {
    constexpr int samples = 16;
    unsigned int leftFrame = 0;
    VQ::Math::Interpolation::Key left;
    bool isFirst = true;
    for (const auto& [frame, key] : curve) {
        const auto record = key->baseMotionCurveKey();
        add(frame, double{record.value});
        // Automatic tangents do not swing out.
        const bool isFree = left.rightTangentType == InterpolationType::bezier ||
                            record.leftTangentType == InterpolationType::bezier;
        for (int i = 1; !isFirst && isFree && i < samples; ++i) {
            const double between = leftFrame + static_cast<double>(frame - leftFrame) * i / samples;
            add(between, double{VQ::Animation::evaluateSegment(leftFrame, left, frame, record, between)});
        }
        leftFrame = frame;
        left = record;
        isFirst = false;
    }
}

void CurveExtent::add(const KeySelection::Keys& keys) {
    for (const ZT::EditableMotionCurveKey* const key : keys) {
        add(ZT::index(key), double{key->getValue()});
    }
}

void CurveExtent::add(double frame, double value) {
    _firstFrame = std::min(_firstFrame, frame);
    _lastFrame = std::max(_lastFrame, frame);
    if (std::isfinite(value)) {
        _lowestValue = std::min(_lowestValue, value);
        _highestValue = std::max(_highestValue, value);
    }
}

void CurveExtent::show(ViewAxis& frames, ViewAxis& values) const {
    if (isEmpty()) {
        return;
    }
    const double reach = std::max(_lastFrame - _firstFrame, 4.0);
    const double middle = 0.5 * (_firstFrame + _lastFrame);
    frames.show(middle - 0.54 * reach, middle + 0.54 * reach);
    if (_lowestValue > _highestValue) {
        return; // No value can be drawn.
    }
    const double height = _highestValue - _lowestValue;
    const double single = _highestValue == 0.0 ? 1.0 : std::abs(_highestValue);
    const double margin = height > 0.0 ? 0.08 * height : single;
    values.show(_lowestValue - margin, _highestValue + margin);
}

} // namespace Editor
