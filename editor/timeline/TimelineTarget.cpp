#include "timeline/TimelineTarget.h"

#include "document/Document.h"
#include "model/AnimationMarkers.h"
#include "timeline/CurveKeys.h"
#include "timeline/TimelineLayout.h"

#include <QLocale>

#include <algorithm>
#include <cstdlib>

namespace Editor {

TimelineTarget::TimelineTarget(Document& document, const TimelineLayout& layout, const QPoint& point)
    : _layer(layout.layerAt(point.y()))
    , _frame(layout.nearestFrame(point.x())) {
    const ZT::AnimationMarkers& markers = document.markers();
    if (point.x() < layout.columnWidth()) {
        _part =
            _layer >= 0 || layout.nameBeside(layout.summary()).contains(point) ? Part::name : Part::nothing;
    } else if (layout.startHandle(markers.startIndex()).contains(point)) {
        _part = Part::startMarker;
        _frame = markers.startIndex();
    } else if (layout.endHandle(markers.endIndex()).contains(point)) {
        _part = Part::endMarker;
        _frame = markers.endIndex();
    } else if (layout.ruler().contains(point)) {
        _part = Part::ruler;
    } else if (layout.lane().contains(point)) {
        _part = _rangePart(document, layout, point.x());
    } else if (layout.summary().contains(point)) {
        _part = _findSummaryKey(document, layout, point.x()) ? Part::summaryKey : Part::rows;
    } else if (layout.rows().contains(point)) {
        ZT::EditableMotionCurve* const curve = _layer < 0 ? nullptr : document.layer(_layer)->getCurve();
        const bool isKey =
            curve != nullptr && document.isEditable(curve) && _findKey(*curve, layout, point.x());
        _part = isKey ? Part::key : Part::rows;
    }
}

// The ends reach outwards, so that a range of one frame has a middle and two ends as well.
TimelineTarget::Part TimelineTarget::_rangePart(const Document& document, const TimelineLayout& layout,
                                                int x) const {
    const ZT::AnimationMarkers& markers = document.markers();
    const int start = layout.x(markers.rangeStartIndex());
    const int end = layout.x(markers.rangeEndIndex());
    const int outwards = layout.handleSize();
    const int inwards = std::min(outwards, (end - start) / 4);
    if (!markers.isRangeVisible() || x < start - outwards || x > end + outwards) {
        return Part::lane;
    }
    if (x < start + inwards) {
        return Part::rangeStart;
    }
    return x > end - inwards ? Part::rangeEnd : Part::range;
}

bool TimelineTarget::_findKey(ZT::EditableMotionCurve& curve, const TimelineLayout& layout, int x) {
    const int reach = layout.keyRadius() + 1;
    const auto frames = layout.framesBetween(x - reach, x + reach);
    const double wanted = layout.frameAt(x);
    const auto distance = [wanted](unsigned int frame) { return std::abs(frame - wanted); };
    std::optional<unsigned int> nearest;
    forEachKey(curve, frames.first, frames.last, [&](unsigned int frame, const auto* /*key*/) {
        if (!nearest || distance(frame) < distance(*nearest)) {
            nearest = frame;
        }
    });
    _frame = nearest.value_or(_frame);
    return nearest.has_value();
}

bool TimelineTarget::_findSummaryKey(Document& document, const TimelineLayout& layout, int x) {
    const double wanted = layout.frameAt(x);
    std::optional<unsigned int> nearest;
    for (ZT::EditableAnimationLayer* const layer : document.animation()) {
        TimelineTarget ofLayer;
        if (document.isEditable(layer->getCurve()) && ofLayer._findKey(*layer->getCurve(), layout, x) &&
            (!nearest || std::abs(ofLayer._frame - wanted) < std::abs(*nearest - wanted))) {
            nearest = ofLayer._frame;
        }
    }
    _frame = nearest.value_or(_frame);
    return nearest.has_value();
}

KeySelection::Keys TimelineTarget::keys(Document& document) const {
    KeySelection::Keys keys;
    for (int i = 0; i < document.layerCount(); ++i) {
        ZT::EditableMotionCurve* const curve = document.layer(i)->getCurve();
        ZT::EditableMotionCurveKey* const key =
            (_layer < 0 || _layer == i) && document.isEditable(curve) ? curve->getKey(_frame) : nullptr;
        if (key != nullptr) {
            keys.insert(key);
        }
    }
    return keys;
}

QString TimelineTarget::description(Document& document) const {
    const QString frame = QString::number(_frame);
    const ZT::EditableAnimationLayer* const layer = document.layer(_layer);
    switch (_part) {
    case Part::nothing:
        return {};
    case Part::startMarker:
        return tr("Start marker at frame %1").arg(frame);
    case Part::endMarker:
        return tr("End marker at frame %1").arg(frame);
    case Part::lane:
        return tr("Frame %1: drag to make a range").arg(frame);
    case Part::range:
    case Part::rangeStart:
    case Part::rangeEnd:
        return tr("Range from frame %1 to %2: drag it or its ends")
            .arg(document.markers().rangeStartIndex())
            .arg(document.markers().rangeEndIndex());
    case Part::summaryKey:
        return tr("Frame %1, %n key(s)", nullptr, static_cast<int>(keys(document).size())).arg(frame);
    case Part::key:
        if (const auto* const key = layer == nullptr ? nullptr : layer->getCurve()->getKey(_frame)) {
            const QString value = QLocale().toString(double{key->getValue()}, 'g', 7);
            return tr("%1, frame %2, value %3").arg(layer->getActuatorName(), frame, value);
        }
        break;
    case Part::name:
    case Part::ruler:
    case Part::rows:
        break;
    }
    if (layer == nullptr) {
        return _part == Part::name ? tr("All layers") : tr("Frame %1").arg(frame);
    }
    const LayerLook look = document.look(_layer);
    const QString name = look.isLocked     ? tr("%1 (locked)").arg(layer->getActuatorName())
                         : !look.isVisible ? tr("%1 (hidden)").arg(layer->getActuatorName())
                                           : layer->getActuatorName();
    return _part == Part::name ? name : tr("%1, frame %2").arg(name, frame);
}

} // namespace Editor
