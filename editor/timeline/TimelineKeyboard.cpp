#include "timeline/TimelineKeyboard.h"

#include "document/AtOnce.h"
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
    : _document(document)
    , _drag(drag)
    , _navigator(navigator)
    , _view(view) {}

bool TimelineKeyboard::press(const QKeyEvent& event) {
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0) {
        return false;
    }
    const bool isShift = event.modifiers().testFlag(Qt::ShiftModifier);
    const double step = isShift ? 10.0 : 1.0;
    switch (event.key()) {
    case Qt::Key_Left:
        _step(-step);
        return true;
    case Qt::Key_Right:
        _step(step);
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
    case Qt::Key_Escape:
        if (_document.selection().isEmpty()) {
            return false;
        }
        _document.selection().clear();
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
        dragAtOnce(_drag, dragKeys(_document.selection().keys()), QPointF(frames, 0.0));
    }
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
    isToggling ? _document.selection().toggle(keys) : _document.selection().set(keys);
}

} // namespace Editor
