#include "timeline/FrameNavigator.h"

#include "curves/ViewAxis.h"
#include "document/Document.h"
#include "document/Frames.h"
#include "model/AnimationMarkers.h"
#include "timeline/CurveKeys.h"

#include <algorithm>
#include <optional>

namespace Editor {

FrameNavigator::FrameNavigator(Document& document, ViewAxis& frames)
    : _document(document)
    , _frames(frames) {}

void FrameNavigator::goTo(unsigned int frame) {
    _document.markers().setSelectedIndex(frame);
    if (frame < _frames.first() || frame > _frames.last()) {
        _frames.pan(frame - 0.5 * (_frames.first() + _frames.last()));
    }
}

void FrameNavigator::step(double distance) {
    goTo(static_cast<unsigned int>(
        std::clamp(_document.markers().selectedIndex() + distance, 0.0, double{lastPossibleFrame})));
}

void FrameNavigator::goToNextKey(int layer) {
    std::optional<unsigned int> nearest;
    for (ZT::EditableMotionCurve* const curve : curvesOf(layer)) {
        const auto next = nextKeyFrame(*curve, _document.markers().selectedIndex());
        if (next && (!nearest || *next < *nearest)) {
            nearest = next;
        }
    }
    goTo(nearest.value_or(_document.markers().selectedIndex()));
}

void FrameNavigator::goToPreviousKey(int layer) {
    std::optional<unsigned int> nearest;
    for (ZT::EditableMotionCurve* const curve : curvesOf(layer)) {
        nearest = std::max(nearest,
                           previousKeyFrame(*curve, _document.markers().selectedIndex())); // None is least.
    }
    goTo(nearest.value_or(_document.markers().selectedIndex()));
}

void FrameNavigator::zoom(double factor) {
    const double frame = _document.markers().selectedIndex();
    const bool isVisible = frame >= _frames.first() && frame <= _frames.last();
    _frames.zoom(factor, isVisible ? frame : 0.5 * (_frames.first() + _frames.last()));
}

std::vector<ZT::EditableMotionCurve*> FrameNavigator::curvesOf(int layer) const {
    if (layer >= 0) {
        return {_document.layer(layer)->getCurve()};
    }
    std::vector<ZT::EditableMotionCurve*> curves;
    for (ZT::EditableAnimationLayer* const each : _document.animation()) {
        if (_document.isEditable(each->getCurve())) {
            curves.push_back(each->getCurve());
        }
    }
    return curves;
}

} // namespace Editor
