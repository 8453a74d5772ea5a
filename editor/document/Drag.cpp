#include "document/Drag.h"

#include "document/Document.h"
#include "document/DragKind.h"
#include "document/HistoryEntry.h"
#include "document/KeySelection.h"
#include "model/FirstException.h"

#include <QSignalBlocker>

#include <cmath>
#include <utility>

namespace Editor {

using ZT::FirstException;

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
    FirstException().guard([this] { finish(); }); // There is nobody left to tell.
}

void Drag::begin(std::unique_ptr<DragKind> kind) {
    finish();
    _kind = std::move(kind);
    _tried = QPointF();
    _lastGood = QPointF();
    FirstException thrown;
    if (!thrown.guard([this] { Q_EMIT activeChanged(true); })) {
        thrown.guard([this] { cancel(); });
    }
    thrown.rethrow();
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
        _say(QString()); // All waits there.
    } else {
        _step(reached);
    }
}

void Drag::finish() {
    // The drag is over before the history hears of its entry.
    std::unique_ptr<HistoryEntry> entry = std::move(_entry);
    FirstException thrown;
    thrown.guard([this] { _forget(); });
    if (entry != nullptr) {
        thrown.guard([&] { _document.history().take(std::move(entry)); });
        thrown.guard([this] { _document.setDragged(false); });
    }
    thrown.rethrow();
}

void Drag::cancel() {
    FirstException thrown;
    thrown.guard([this] { _takeBack(); });
    thrown.guard([this] { _document.setDragged(false); });
    thrown.guard([this] { _forget(); });
    thrown.rethrow();
}

void Drag::_step(const QPointF& distance) {
    auto command = _kind->step(distance);
    FirstException thrown;
    QString why;
    if (command == nullptr) {
        _lastGood = QPointF();
        thrown.guard([this] { _takeBack(); });
    } else if (thrown.guard([&] { why = _add(std::move(command)); }) && why.isEmpty()) {
        _lastGood = distance;
    }
    thrown.guard([this] { _document.setDragged(_entry != nullptr); });
    thrown.guard([&] { _say(why); });
    thrown.rethrow();
}

// Returns why the command, which leads on from the last good step, was taken back; empty where it was not.
QString Drag::_add(std::unique_ptr<QUndoCommand> command) {
    const KeySelection::Keys selected = _document.selection().keys();
    if (_entry == nullptr) {
        _entry = std::make_unique<HistoryEntry>(_kind->text());
    }
    QString why;
    FirstException thrown;
    bool isGood = thrown.guard([&] { _entry->add(std::move(command)); });
    if (isGood) {
        isGood = thrown.guard([&] { why = _kind->problem(_entry->lastCommand()); }) && why.isEmpty();
        if (isGood) {
            _entry->mergeLast();
        } else {
            thrown.guard([this] { _entry->dropLast(); });
        }
    }
    if (!isGood) {
        if (_entry->isEmpty()) {
            _entry.reset();
        }
        thrown.guard([&] { _document.selection().set(selected); }); // Keys without a place had left it.
    }
    thrown.rethrow();
    return why;
}

// To where the drag began.
void Drag::_takeBack() {
    if (const std::unique_ptr<HistoryEntry> entry = std::move(_entry)) {
        entry->undo();
        entry->thrown().rethrow();
    }
}

// A block, or with an empty text that it is over.
void Drag::_say(const QString& why) {
    const bool wasBlocked = std::exchange(_isBlocked, !why.isEmpty());
    if (wasBlocked || _isBlocked) {
        Q_EMIT blocked(why);
    }
}

void Drag::_forget() {
    if (std::exchange(_kind, nullptr) != nullptr) {
        FirstException thrown;
        thrown.guard([this] { _say(QString()); });
        thrown.guard([this] { Q_EMIT activeChanged(false); });
        thrown.rethrow();
    }
}

} // namespace Editor
