#include "timeline/TimelineGesture.h"

#include "document/Document.h"
#include "document/Drag.h"
#include "document/RangeDrags.h"
#include "model/AnimationMarkers.h"
#include "timeline/CurveKeys.h"

#include <QApplication>

#include <algorithm>
#include <utility>

namespace Editor {

using Part = TimelineTarget::Part;

TimelineGesture::TimelineGesture(Document& document, Drag& drag)
    : _document(document)
    , _drag(drag) {}

bool TimelineGesture::movesMarker() const noexcept {
    return _kind == Kind::currentFrame || _kind == Kind::startMarker || _kind == Kind::endMarker;
}

void TimelineGesture::press(const TimelineTarget& target, const TimelineLayout& layout, const QPoint& point,
                            Qt::KeyboardModifiers modifiers) {
    _target = target;
    _pressed = point;
    _point = point;
    _pressedFrame = layout.frameAt(point.x());
    _pressedY = layout.contentY(point.y());
    _isToggling = (modifiers & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
    _isOnSummary = layout.summary().contains(point);
    switch (target.part()) {
    case Part::ruler:
        _grabMarker(Kind::currentFrame, _document.markers().selectedIndex(), layout);
        _grip = 0; // The current frame comes to the pointer.
        _setMarker(target.frame());
        break;
    case Part::startMarker:
    case Part::endMarker:
        _grabMarker(target.part() == Part::startMarker ? Kind::startMarker : Kind::endMarker, target.frame(),
                    layout);
        break;
    case Part::lane:
    case Part::range:
    case Part::rangeStart:
    case Part::rangeEnd:
        _kind = Kind::waiting;
        break;
    case Part::summaryKey:
    case Part::key:
        _pressKey(_isToggling);
        break;
    case Part::rows:
        _kind = Kind::band;
        break;
    case Part::nothing:
    case Part::name:
        _kind = Kind::none;
        break;
    }
}

// Keys that are selected already stay so until the button is released: they may be about to be dragged
// together.
void TimelineGesture::_pressKey(bool isToggling) {
    KeySelection& selection = _document.selection();
    const KeySelection::Keys keys = _target.keys(_document);
    const bool areSelected = selection.keys().contains(keys);
    if (isToggling && areSelected) {
        selection.toggle(keys);
        _kind = Kind::none;
        return;
    }
    if (isToggling) {
        selection.add(keys);
    } else if (!areSelected) {
        selection.set(keys);
    }
    _kind = Kind::waiting;
}

void TimelineGesture::_grabMarker(Kind kind, unsigned int frame, const TimelineLayout& layout) {
    _kind = kind;
    _before = frame;
    _grip = layout.x(frame) - _pressed.x();
}

// Neither marker of the span that plays pushes the other one: it would not come back with the pointer.
void TimelineGesture::_setMarker(unsigned int frame) {
    ZT::AnimationMarkers& markers = _document.markers();
    if (_kind == Kind::currentFrame) {
        markers.setSelectedIndex(frame);
    } else if (_kind == Kind::startMarker) {
        markers.setStartIndex(std::min(frame, std::max(markers.endIndex(), _before)));
    } else {
        markers.setEndIndex(std::max(frame, std::min(markers.startIndex(), _before)));
    }
}

void TimelineGesture::move(const TimelineLayout& layout, const QPoint& point) {
    _point = point;
    if (movesMarker()) {
        _setMarker(layout.nearestFrame(point.x() + _grip));
        return;
    }
    if (_kind == Kind::waiting && (point - _pressed).manhattanLength() >= QApplication::startDragDistance()) {
        _beginDrag();
    }
    if (_kind == Kind::dragging) {
        _drag.moveTo(QPointF(layout.frameAt(point.x()) - _pressedFrame, 0.0));
    }
}

// An undo may have taken the range away since it was pressed.
void TimelineGesture::_beginDrag() {
    const Part part = _target.part();
    const bool isOnRange = part == Part::range || part == Part::rangeStart || part == Part::rangeEnd;
    if (isOnRange && !_document.markers().isRangeVisible()) {
        _kind = Kind::none;
        return;
    }
    _drag.begin(_dragKind());
    _kind = Kind::dragging;
}

std::unique_ptr<DragKind> TimelineGesture::_dragKind() const {
    switch (_target.part()) {
    case Part::range:
        return dragRange(_document);
    case Part::rangeStart:
        return dragRangeEnd(_document, ZT::AnimCmd::StretchSide::start);
    case Part::rangeEnd:
        return dragRangeEnd(_document, ZT::AnimCmd::StretchSide::end);
    case Part::lane:
        return dragNewRange(_document, _target.frame());
    default:
        return dragKeys(_document.selection().keys());
    }
}

void TimelineGesture::release(const TimelineLayout& layout, const QPoint& point) {
    move(layout, point);
    if (_kind == Kind::waiting && _target.isKey() && !_isToggling) {
        _document.selection().set(_target.keys(_document));
    } else if (_kind == Kind::band) {
        _selectBand(layout);
    }
    end();
}

void TimelineGesture::end() {
    if (std::exchange(_kind, Kind::none) == Kind::dragging) {
        _drag.finish();
    }
}

bool TimelineGesture::cancel() {
    if (movesMarker()) {
        _setMarker(_before);
    }
    const Kind kind = std::exchange(_kind, Kind::none);
    if (kind == Kind::dragging) {
        _drag.cancel();
    }
    return kind != Kind::none;
}

// In the rows it stays in their visible part, so that nothing is selected that cannot be seen; on the summary
// it stands for all layers.
QRect TimelineGesture::band(const TimelineLayout& layout) const {
    if (_kind != Kind::band) {
        return {};
    }
    const QRect part = _isOnSummary ? layout.summary() : layout.rows();
    if (part.isEmpty()) { // The view became too small meanwhile.
        return {};
    }
    const int fromX = layout.x(_pressedFrame);
    const int fromY = _isOnSummary ? part.top() : layout.viewY(_pressedY);
    const int toX = qBound(part.left(), _point.x(), part.right());
    const int toY = _isOnSummary ? part.bottom() : qBound(part.top(), _point.y(), part.bottom());
    return {QPoint(std::min(fromX, toX), std::min(fromY, toY)),
            QPoint(std::max(fromX, toX), std::max(fromY, toY))};
}

void TimelineGesture::_selectBand(const TimelineLayout& layout) {
    const QRect area = band(layout);
    const auto frames = layout.framesBetween(area.left(), area.right());
    const int first = _isOnSummary ? 0 : layout.contentY(area.top()) / layout.rowHeight();
    const int last =
        _isOnSummary ? _document.layerCount() : layout.contentY(area.bottom()) / layout.rowHeight();
    KeySelection::Keys keys;
    for (int i = std::max(0, first); i <= std::min(last, _document.layerCount() - 1); ++i) {
        ZT::EditableMotionCurve* const curve = _document.layer(i)->getCurve();
        if (_document.isEditable(curve)) {
            forEachKey(
                *curve, frames.first, frames.last,
                [&keys](unsigned int /*frame*/, ZT::EditableMotionCurveKey* key) { keys.insert(key); });
        }
    }
    if (_isToggling) {
        _document.selection().add(keys);
    } else {
        _document.selection().set(keys);
    }
}

} // namespace Editor
