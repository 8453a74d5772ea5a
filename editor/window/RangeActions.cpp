#include "window/RangeActions.h"

#include "document/AtOnce.h"
#include "document/Frames.h"
#include "document/RangeDrags.h"
#include "model/AnimationMarkers.h"
#include "window/ActionMaker.h"
#include "window/Workspace.h"

#include <QMenu>

#include <algorithm>
#include <utility>

namespace Editor {

RangeActions::RangeActions(Workspace& ofWorkspace, QObject* parent)
    : ActionSet(ofWorkspace, {}, parent) {
    _rangeActions = {
        _add(tr("&Begin Range at Current Frame"), "beginRange", Qt::Key_B, &RangeActions::_begin),
        _add(tr("&End Range at Current Frame"), "endRange", Qt::Key_E, &RangeActions::_end),
    };
    _ofSelection =
        _add(tr("&Range of Selected Keys"), "rangeOfSelection", Qt::Key_R, &RangeActions::_spanSelection);
    _keysActions = {
        _add(tr("&Move Range to Current Frame"), "moveRange", Qt::Key_M, &RangeActions::_move),
        _add(tr("&Stretch Range Start to Current Frame"), "stretchRangeStart", Qt::SHIFT | Qt::Key_B,
             &RangeActions::_stretchStart),
        _add(tr("S&tretch Range End to Current Frame"), "stretchRangeEnd", Qt::SHIFT | Qt::Key_E,
             &RangeActions::_stretchEnd),
    };
    _removeAction = _add(tr("Remo&ve Range"), "removeRange", Qt::SHIFT | Qt::Key_R, &RangeActions::_remove);
    _markerActions = {
        _add(tr("Set Start Marker at &Current Frame"), "setStartMarker", Qt::Key_I,
             &RangeActions::_setStartMarker),
        _add(tr("Set End Marker &at Current Frame"), "setEndMarker", Qt::Key_O, &RangeActions::_setEndMarker),
    };
    const KeySelection& selection = workspace.document.selection();
    const auto enable = [this, &selection] { _ofSelection->setEnabled(!selection.isEmpty()); };
    connect(&selection, &KeySelection::changed, this, enable);
    enable();
}

QAction* RangeActions::_add(const QString& text, const char* name, const QKeySequence& keys,
                            void (RangeActions::*slot)()) {
    QAction* const action = dress(new QAction(text, this), name, {keys});
    limitKeysToItsWidgets(action);
    onTriggered(action, [this, slot] { (this->*slot)(); });
    return action;
}

void RangeActions::addTo(QMenu& menu) const {
    menu.addActions(_rangeActions);
    menu.addAction(_ofSelection);
    menu.addSeparator();
    menu.addActions(_keysActions);
    menu.addSeparator();
    menu.addAction(_removeAction);
    menu.addSeparator();
    menu.addActions(_markerActions);
}

void RangeActions::addTo(QToolBar& /*bar*/) const {}

QList<QAction*> RangeActions::forKeys() const {
    return {_ofSelection};
}

void RangeActions::listenIn(QWidget& view) const {
    view.addActions(_rangeActions + _keysActions + _markerActions);
    view.addAction(_ofSelection);
    view.addAction(_removeAction);
}

ZT::AnimationMarkers& RangeActions::_markers() const {
    return workspace.document.markers();
}

// To where the range ends; without one, or behind it, to the end marker. A range is never shorter than a
// frame.
void RangeActions::_begin() {
    const unsigned int frame = _markers().selectedIndex();
    if (frame == lastPossibleFrame) {
        Q_EMIT noted(tr("No range can begin at the last possible frame."));
        return;
    }
    const unsigned int end = _markers().isRangeVisible() ? _markers().rangeEndIndex() : 0;
    _show(frame, end > frame ? end : std::max(_markers().endIndex(), frame + 1U));
}

void RangeActions::_end() {
    const unsigned int frame = _markers().selectedIndex();
    if (frame == 0) {
        Q_EMIT noted(tr("No range can end at the first frame."));
        return;
    }
    const bool isBehindStart = _markers().isRangeVisible() && _markers().rangeStartIndex() < frame;
    _show(isBehindStart ? _markers().rangeStartIndex() : std::min(_markers().startIndex(), frame - 1U),
          frame);
}

void RangeActions::_spanSelection() {
    unsigned int first = lastPossibleFrame;
    unsigned int last = 0;
    for (const ZT::EditableMotionCurveKey* const key : workspace.document.selection().keys()) {
        first = std::min(first, ZT::index(key));
        last = std::max(last, ZT::index(key));
    }
    if (first < last) {
        _show(first, last);
    } else {
        Q_EMIT noted(tr("A range needs keys at two frames at least."));
    }
}

void RangeActions::_show(unsigned int first, unsigned int last) {
    const bool isThere = _markers().isRangeVisible() && _markers().rangeStartIndex() == first &&
                         _markers().rangeEndIndex() == last;
    if (!isThere) {
        dragAtOnce(workspace.drag, dragNewRange(workspace.document, first),
                   QPointF(static_cast<double>(last) - first, 0.0));
    }
}

void RangeActions::_move() {
    if (_hasRange()) {
        _drag(dragRange(workspace.document), _markers().rangeStartIndex());
    }
}

void RangeActions::_stretchStart() {
    if (_hasRange()) {
        _drag(dragRangeEnd(workspace.document, ZT::AnimCmd::StretchSide::start),
              _markers().rangeStartIndex());
    }
}

void RangeActions::_stretchEnd() {
    if (_hasRange()) {
        _drag(dragRangeEnd(workspace.document, ZT::AnimCmd::StretchSide::end), _markers().rangeEndIndex());
    }
}

// What stands at @p from comes to the current frame, as far as the keys let it.
void RangeActions::_drag(std::unique_ptr<DragKind> kind, unsigned int from) {
    dragAtOnce(workspace.drag, std::move(kind),
               QPointF(static_cast<double>(_markers().selectedIndex()) - from, 0.0));
}

void RangeActions::_remove() {
    if (_hasRange()) {
        removeRange(workspace.document);
    }
}

bool RangeActions::_hasRange() {
    if (!_markers().isRangeVisible()) {
        Q_EMIT noted(tr("There is no range."));
    }
    return _markers().isRangeVisible();
}

// Neither marker pushes the other one, as when they are dragged.
void RangeActions::_setStartMarker() {
    const unsigned int frame = _markers().selectedIndex();
    if (frame > _markers().endIndex()) {
        Q_EMIT noted(tr("The start marker cannot stand behind the end marker."));
    } else {
        _markers().setStartIndex(frame);
    }
}

void RangeActions::_setEndMarker() {
    const unsigned int frame = _markers().selectedIndex();
    if (frame < _markers().startIndex()) {
        Q_EMIT noted(tr("The end marker cannot stand before the start marker."));
    } else {
        _markers().setEndIndex(frame);
    }
}

} // namespace Editor
