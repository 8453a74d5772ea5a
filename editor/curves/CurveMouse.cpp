#include "curves/CurveMouse.h"

#include "curves/HitTest.h"
#include "curves/PointerPosition.h"
#include "curves/ViewAxis.h"
#include "document/Document.h"
#include "document/Drag.h"
#include "document/DragKind.h"
#include "document/KeySelection.h"
#include "model/AnimationMarkers.h"

#include <QMouseEvent>
#include <QRubberBand>
#include <QWidget>

#include <cmath>
#include <utility>

namespace Editor {

namespace {

constexpr double clickDistance = 3.0; // pixels

} // namespace

CurveMouse::CurveMouse(Document& document, Drag& drag, ViewAxis& frames, ViewAxis& values, QWidget& view)
    : QObject(&view)
    , _document(document)
    , _drag(drag)
    , _frames(frames)
    , _values(values)
    , _band(new QRubberBand(QRubberBand::Rectangle, &view)) {
    connect(&drag, &Drag::activeChanged, this, [this](bool isActive) {
        if (!isActive && _isDragging()) {
            _gesture = Gesture::none;
        }
    });
}

const ZT::EditableMotionCurveKey* CurveMouse::draggedKey() const {
    return _isDragging() ? _key.data() : nullptr;
}

bool CurveMouse::_isDragging() const noexcept {
    return _gesture == Gesture::keys || _gesture == Gesture::handle;
}

void CurveMouse::press(const QMouseEvent& event, const CurvePlacement& placement, int currentLayer,
                       bool isPanning) {
    if (isActive()) {
        return;
    }
    _button = event.button();
    _start = placement.toPosition(positionOf(event));
    _hasMoved = false;
    if (_button == Qt::MiddleButton || (_button == Qt::LeftButton && isPanning)) {
        _gesture = Gesture::pan;
        _framesBefore = {_frames.first(), _frames.last()};
        _valuesBefore = {_values.first(), _values.last()};
    } else if (_button == Qt::LeftButton) {
        _pressLeft(event, placement, currentLayer);
    } else if (_button == Qt::RightButton) { // What a menu then offers is about the key under the pointer.
        const auto hit = HitTest(_document, placement, currentLayer).at(positionOf(event));
        if (hit && hit->key != nullptr && !_document.selection().contains(hit->key)) {
            _document.selection().set({hit->key});
        }
    }
}

void CurveMouse::moveTo(const QMouseEvent& event, const CurvePlacement& placement) {
    if (isActive() && !event.buttons().testFlag(_button)) {
        end();
    } else {
        _follow(event, placement);
    }
}

void CurveMouse::end() {
    _band->hide();
    const bool wasDragging = _isDragging();
    _gesture = Gesture::none;
    if (wasDragging) {
        _drag.finish();
    }
}

void CurveMouse::_follow(const QMouseEvent& event, const CurvePlacement& placement) {
    const QPointF away = positionOf(event) - _startPoint(placement);
    _hasMoved = _hasMoved || std::abs(away.x()) + std::abs(away.y()) >= clickDistance;
    switch (_gesture) {
    case Gesture::none:
        break;
    case Gesture::pan:
        _frames.pan(_start.x() - placement.toFrame(positionOf(event).x()));
        _values.pan(_start.y() - placement.toValue(positionOf(event).y()));
        break;
    case Gesture::scrub:
        _scrubTo(positionOf(event), placement);
        break;
    case Gesture::band:
        if (_hasMoved) {
            const QRectF plot(placement.plot());
            const QRectF band = QRectF(_startPoint(placement), positionOf(event)).normalized() & plot;
            _band->setGeometry(band.toAlignedRect());
            _band->show();
        }
        break;
    case Gesture::keys:
    case Gesture::handle:
        if (_hasMoved) {
            _dragTo(event, placement);
        }
        break;
    }
}

void CurveMouse::release(const QMouseEvent& event, const CurvePlacement& placement) {
    if (!isActive() || event.button() != _button) {
        return;
    }
    _follow(event, placement);
    const Gesture gesture = std::exchange(_gesture, Gesture::none);
    const bool isShift = event.modifiers().testFlag(Qt::ShiftModifier);
    if (gesture == Gesture::band) {
        _selectBand(placement, isShift);
    } else if (gesture == Gesture::keys || gesture == Gesture::handle) {
        _drag.finish();
        if (!_hasMoved && gesture == Gesture::keys) {
            _clickKey(isShift);
        }
    }
}

bool CurveMouse::cancel() {
    const Gesture gesture = std::exchange(_gesture, Gesture::none);
    if (gesture == Gesture::keys || gesture == Gesture::handle) {
        _drag.cancel();
    } else if (gesture == Gesture::scrub) {
        _document.markers().setSelectedIndex(_frameBefore);
    } else if (gesture == Gesture::pan) {
        _frames.show(_framesBefore.first, _framesBefore.last);
        _values.show(_valuesBefore.first, _valuesBefore.last);
    }
    _band->hide();
    return gesture != Gesture::none;
}

void CurveMouse::_pressLeft(const QMouseEvent& event, const CurvePlacement& placement, int currentLayer) {
    const QRectF plot(placement.plot());
    const QPointF point = positionOf(event);
    const bool isShift = event.modifiers().testFlag(Qt::ShiftModifier);
    if (!plot.contains(point)) {
        if (point.y() < plot.top() && point.x() >= plot.left()) {
            _gesture = Gesture::scrub;
            _frameBefore = _document.markers().selectedIndex();
            _scrubTo(point, placement);
        }
        return;
    }
    const auto hit = HitTest(_document, placement, currentLayer).at(point);
    if (hit) {
        Q_EMIT layerPicked(hit->layer);
    }
    if (!hit || hit->key == nullptr || !_document.isEditable(hit->key->getParentCurve())) {
        _gesture = Gesture::band;
    } else if (hit->part == Hit::Part::handle) {
        _grabHandle(*hit, event.modifiers().testFlag(Qt::ControlModifier));
    } else {
        _grabKey(hit->key, isShift);
    }
}

// A selected key stays so, that all selected ones can be dragged by it; what a click means is known at the
// release.
void CurveMouse::_grabKey(ZT::EditableMotionCurveKey* key, bool isAdding) {
    KeySelection& selection = _document.selection();
    _wasSelected = selection.contains(key);
    if (!_wasSelected) {
        isAdding ? selection.add({key}) : selection.set({key});
    }
    _key = key;
    _drag.begin(dragKeys(selection.keys()));
    _gesture = Gesture::keys; // A drag that this one has ended was no gesture's of this view.
}

void CurveMouse::_grabHandle(const Hit& hit, bool ofAllSelected) {
    const KeySelection::Keys keys =
        ofAllSelected ? _document.selection().keys() : KeySelection::Keys{hit.key};
    _key = hit.key;
    _drag.begin(dragHandles(keys, *hit.key, hit.side));
    _gesture = Gesture::handle;
}

void CurveMouse::_dragTo(const QMouseEvent& event, const CurvePlacement& placement) {
    QPointF distance = placement.toPosition(positionOf(event)) - _start;
    if (_gesture == Gesture::keys) { // To values without digits that nobody sees.
        const double step = ViewAxis::niceStep(0.1 / placement.pixelsPerValue());
        distance.setY(std::round(distance.y() / step) * step);
    }
    if (event.modifiers().testFlag(Qt::ShiftModifier)) {
        const QPointF pixels = positionOf(event) - _startPoint(placement);
        std::abs(pixels.x()) >= std::abs(pixels.y()) ? distance.setY(0.0) : distance.setX(0.0);
    }
    _drag.moveTo(distance);
}

void CurveMouse::_scrubTo(const QPointF& point, const CurvePlacement& placement) {
    _document.markers().setSelectedIndex(placement.nearestFrame(point.x()));
}

void CurveMouse::_selectBand(const CurvePlacement& placement, bool isAdding) {
    KeySelection& selection = _document.selection();
    if (!_hasMoved) {
        if (!isAdding) {
            selection.clear();
        }
        return;
    }
    _band->hide();
    const auto keys = HitTest(_document, placement, -1).keysIn(QRectF(_band->geometry()));
    isAdding ? selection.add(keys) : selection.set(keys);
}

void CurveMouse::_clickKey(bool isToggling) {
    if (_key == nullptr || !_wasSelected) {
        return;
    }
    KeySelection& selection = _document.selection();
    isToggling ? selection.toggle({_key.data()}) : selection.set({_key.data()});
}

QPointF CurveMouse::_startPoint(const CurvePlacement& placement) const {
    return placement.toPoint(_start.x(), _start.y());
}

} // namespace Editor
