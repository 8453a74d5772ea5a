#include "curves/CurveKeyboard.h"

#include "curves/ViewAxis.h"
#include "document/AtOnce.h"
#include "document/Document.h"
#include "document/Drag.h"
#include "document/DragKind.h"
#include "document/KeySelection.h"

#include <QKeyEvent>

#include <cmath>

namespace Editor {

namespace {

// Scrolls no further than needed, and then so far that the position is not at the very edge.
void bringIntoView(ViewAxis& axis, double position) {
    const double margin = 0.1 * axis.span();
    if (position < axis.first()) {
        axis.pan(position - axis.first() - margin);
    } else if (position > axis.last()) {
        axis.pan(position - axis.last() + margin);
    }
}

} // namespace

CurveKeyboard::CurveKeyboard(Document& document, Drag& drag, ViewAxis& frames, ViewAxis& values)
    : _document(document)
    , _drag(drag)
    , _frames(frames)
    , _values(values) {}

bool CurveKeyboard::wants(const QKeyEvent& event) const {
    const bool isOurs = !_nudgeOf(event).isNull() || event.key() == Qt::Key_Escape;
    const bool hasOthers =
        event.modifiers().testFlag(Qt::ControlModifier) || event.modifiers().testFlag(Qt::AltModifier);
    return isOurs && !hasOthers && !_document.selection().isEmpty();
}

bool CurveKeyboard::press(const QKeyEvent& event) {
    if (!wants(event)) {
        return false;
    }
    KeySelection& selection = _document.selection();
    if (event.key() == Qt::Key_Escape) {
        selection.clear();
    } else {
        dragAtOnce(_drag, dragKeys(selection.keys()), _nudgeOf(event));
    }
    return true;
}

QPointF CurveKeyboard::_nudgeOf(const QKeyEvent& event) const {
    const double times = event.modifiers().testFlag(Qt::ShiftModifier) ? 10.0 : 1.0;
    const double value = ViewAxis::niceStep(_values.span() / 100.0);
    switch (event.key()) {
    case Qt::Key_Left:
        return {-times, 0.0};
    case Qt::Key_Right:
        return {times, 0.0};
    case Qt::Key_Up:
        return {0.0, times * value};
    case Qt::Key_Down:
        return {0.0, -times * value};
    default:
        return {};
    }
}

bool CurveKeyboard::step(int layer, bool isForward) {
    ZT::EditableMotionCurveKey* const key = _nextKey(layer, isForward);
    if (key == nullptr) {
        return false;
    }
    _document.selection().set({key});
    bringIntoView(_frames, ZT::index(key));
    if (const auto value = double{key->getValue()}; std::isfinite(value)) {
        bringIntoView(_values, value);
    }
    return true;
}

// From the outermost of the selected keys in that direction, else the first key from that side.
ZT::EditableMotionCurveKey* CurveKeyboard::_nextKey(int layer, bool isForward) const {
    if (_document.layer(layer) == nullptr) {
        return nullptr;
    }
    ZT::EditableMotionCurve& curve = *_document.layer(layer)->getCurve();
    if (curve.empty() || !_document.isEditable(&curve)) {
        return nullptr;
    }
    ZT::EditableMotionCurveKey* from = nullptr;
    for (ZT::EditableMotionCurveKey* const key : _document.selection().keys()) {
        const bool isHere = key->getParentCurve() == &curve;
        if (isHere && (from == nullptr || (ZT::index(key) > ZT::index(from)) == isForward)) {
            from = key;
        }
    }
    if (from != nullptr) {
        return isForward ? curve.getNextKey(from) : curve.getPreviousKey(from);
    }
    return isForward ? curve.begin()->second : curve.getKey(curve.getGreaterIndex());
}

} // namespace Editor
