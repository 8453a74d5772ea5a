#include "timeline/TimelineKeyboard.h"

#include "document/Document.h"
#include "document/Drag.h"
#include "document/DragKind.h"
#include "document/KeySelection.h"
#include "model/AnimationMarkers.h"
#include "timeline/FrameNavigator.h"
#include "timeline/TimelineView.h"

#include <QKeyEvent>

namespace Editor {

TimelineKeyboard::TimelineKeyboard(Document& document, Drag& drag, FrameNavigator& navigator,
                                   TimelineView& view)
    : QObject(&view)
    , _document(document)
    , _drag(drag)
    , _navigator(navigator)
    , _view(view) {}

bool TimelineKeyboard::press(const QKeyEvent& event) {
    const bool isShift = (event.modifiers() & Qt::ShiftModifier) != 0;
    const bool isControl = (event.modifiers() & Qt::ControlModifier) != 0;
    const double step = isShift ? 10.0 : 1.0;
    switch (event.key()) {
    case Qt::Key_Left:
        isControl ? _view.goToPreviousKey() : _step(-step);
        return true;
    case Qt::Key_Right:
        isControl ? _view.goToNextKey() : _step(step);
        return true;
    case Qt::Key_Home:
        _view.goToStart();
        return true;
    case Qt::Key_End:
        _view.goToEnd();
        return true;
    case Qt::Key_Up:
        _stepLayer(-1);
        return true;
    case Qt::Key_Down:
        _stepLayer(1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        _selectAtCurrentFrame(isShift);
        return true;
    case Qt::Key_Plus:
        _navigator.zoom(1.0 / TimelineView::zoomStep);
        return true;
    case Qt::Key_Minus:
        _navigator.zoom(TimelineView::zoomStep);
        return true;
    default:
        return false;
    }
}

// Without selected keys the current frame moves, so that the keyboard can go to where it selects some.
void TimelineKeyboard::_step(double frames) {
    if (_document.selection().isEmpty()) {
        _navigator.step(frames);
    } else {
        _nudge(frames);
    }
}

// The drag takes its message back when it ends, which here is at once; it is said in its stead.
void TimelineKeyboard::_nudge(double frames) {
    QString why;
    const auto listening = connect(&_drag, &Drag::blocked, this,
                                   [&why](const QString& text) { why = text.isEmpty() ? why : text; });
    _drag.begin(dragKeys(_document.selection().keys()));
    _drag.moveTo(QPointF(frames, 0.0));
    _drag.finish();
    disconnect(listening);
    Q_EMIT nudged(why);
}

void TimelineKeyboard::_stepLayer(int layers) {
    if (_document.layerCount() > 0) {
        const int current = _view.currentLayer();
        _view.setCurrentLayer(current < 0 ? 0 : qBound(0, current + layers, _document.layerCount() - 1));
    }
}

void TimelineKeyboard::_selectAtCurrentFrame(bool isToggling) {
    KeySelection::Keys keys;
    for (ZT::EditableMotionCurve* const curve : _navigator.curvesOf(_view.currentLayer())) {
        if (ZT::EditableMotionCurveKey* const key = curve->getKey(_document.markers().selectedIndex())) {
            keys.insert(key);
        }
    }
    if (isToggling) {
        _document.selection().toggle(keys);
    } else {
        _document.selection().set(keys);
    }
}

} // namespace Editor
