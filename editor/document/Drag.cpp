#include "document/Drag.h"

#include "document/Document.h"
#include "document/DragEntry.h"
#include "document/DragKind.h"
#include "document/KeySelection.h"

#include <QSignalBlocker>

#include <cmath>
#include <utility>

namespace Editor {

namespace {

// Qt's comparison takes points for equal that are far apart where values are tiny.
bool isSame(const QPointF& a, const QPointF& b) {
    return a.x() == b.x() && a.y() == b.y();
}

} // namespace

Drag::Drag(Document& document)
    : _document(document) {
    connect(&document.history(), &History::aboutToChange, this, &Drag::finish);
}

Drag::~Drag() {
    const QSignalBlocker quiet(this);
    finish();
}

void Drag::begin(std::unique_ptr<DragKind> kind) {
    finish();
    _kind = std::move(kind);
    _tried = QPointF();
    _lastGood = QPointF();
    Q_EMIT activeChanged(true);
}

void Drag::moveTo(const QPointF& distance) {
    if (!isActive() || !std::isfinite(distance.x()) || !std::isfinite(distance.y())) {
        return;
    }
    const QPointF reached = _kind->reach(distance);
    if (isSame(reached, _tried)) {
        return;
    }
    _tried = reached;
    if (isSame(reached, _lastGood)) {
        _unblock(); // All waits there.
    } else {
        _step(reached, false);
    }
}

void Drag::finish() {
    if (_entry != nullptr) {
        _step(_lastGood, true);
    }
    // The drag is over before the history hears of its entry, which finishes drags.
    std::unique_ptr<DragEntry> entry = std::move(_entry);
    _forget();
    if (entry != nullptr) {
        _document.history().push(entry.release()); // The history owns it.
        _document.setDragged(false);
    }
}

void Drag::cancel() {
    _takeBack();
    _document.setDragged(false);
    _forget();
}

void Drag::_step(const QPointF& distance, bool isFinal) {
    auto command = _kind->step(distance, isFinal);
    if (command == nullptr) {
        _takeBack();
        _lastGood = QPointF();
    } else {
        const KeySelection::Keys selected = _document.selection().keys();
        if (_entry == nullptr) {
            _entry = std::make_unique<DragEntry>();
        }
        _entry->add(std::move(command));
        if (const QString why = _kind->problem(_entry->lastCommand()); !why.isEmpty()) {
            _takeBack();
            if (!_lastGood.isNull()) {
                _entry = std::make_unique<DragEntry>();
                _entry->add(_kind->step(_lastGood, false));
            }
            _document.selection().set(selected); // Keys that found no place had left it.
            _isBlocked = true;
            Q_EMIT blocked(why);
            return;
        }
        _lastGood = distance;
    }
    _document.setDragged(_entry != nullptr);
    _unblock();
}

// To where the drag began.
void Drag::_takeBack() {
    if (const std::unique_ptr<DragEntry> entry = std::move(_entry)) {
        entry->undo();
    }
}

void Drag::_unblock() {
    if (std::exchange(_isBlocked, false)) {
        Q_EMIT blocked(QString());
    }
}

void Drag::_forget() {
    if (std::exchange(_kind, nullptr) != nullptr) {
        _unblock();
        Q_EMIT activeChanged(false);
    }
}

} // namespace Editor
