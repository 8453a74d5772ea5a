#include "document/Drag.h"

#include "document/Document.h"
#include "document/DragEntry.h"
#include "document/DragKind.h"
#include "document/KeySelection.h"

#include <QScopedValueRollback>

#include <cmath>
#include <utility>

namespace Editor {

Drag::Drag(Document& document)
    : _document(document) {
    connect(&document.history(), &QUndoStack::indexChanged, this, [this] {
        if (!_isWriting) {
            _forget();
        }
    });
    // What is saved is an entry of its own: later steps would not merge into it.
    connect(&document.history(), &QUndoStack::cleanChanged, this, [this](bool isClean) {
        if (isClean && !_isWriting) {
            _forget();
        }
    });
    connect(&document, &Document::replaced, this, &Drag::_forget);
}

Drag::~Drag() = default;

void Drag::begin(std::unique_ptr<DragKind> kind) {
    finish();
    _kind = std::move(kind);
    _lastGood = QPointF();
    ++_number;
    Q_EMIT activeChanged(true);
}

void Drag::moveTo(const QPointF& distance) {
    const bool isFinite = std::isfinite(distance.x()) && std::isfinite(distance.y());
    if (isActive() && isFinite && (_isBlocked || !_isWhereItWasLast(distance))) {
        _step(distance, false);
    }
}

void Drag::finish() {
    if (_entry != nullptr) {
        _step(_lastGood, true);
    }
    _forget();
}

void Drag::cancel() {
    _leave();
    _forget();
}

// Bit by bit: points that Qt takes for equal are far apart where values are tiny.
bool Drag::_isWhereItWasLast(const QPointF& distance) const {
    return distance.x() == _lastGood.x() && distance.y() == _lastGood.y();
}

void Drag::_step(const QPointF& distance, bool isFinal) {
    const QScopedValueRollback<bool> writing(_isWriting, true);
    auto command = _kind->step(distance, isFinal);
    if (command == nullptr) {
        _leave();
        _lastGood = QPointF();
    } else {
        auto* const entry = new DragEntry(std::move(command), _number);
        if (_entry == nullptr) {
            _entry = entry;
        }
        const KeySelection::Keys selected = _document.selection().keys();
        _document.history().push(entry); // Deletes it where it merges.
        if (const QString why = _kind->problem(_entry->command()); !why.isEmpty()) {
            _takeStepBack();
            _document.selection().set(selected); // Keys that found no place had left it.
            _isBlocked = true;
            Q_EMIT blocked(why);
            return;
        }
        _lastGood = distance;
    }
    if (std::exchange(_isBlocked, false)) {
        Q_EMIT blocked(QString());
    }
}

void Drag::_takeStepBack() {
    if (_lastGood.isNull()) {
        _leave();
    } else {
        _entry->restart([this] { return _kind->step(_lastGood, false); });
    }
}

// Back to the beginning, without a trace in the history.
void Drag::_leave() {
    const QScopedValueRollback<bool> writing(_isWriting, true);
    if (DragEntry* const entry = std::exchange(_entry, nullptr)) {
        entry->cancel();
        _document.history().undo();
    }
}

void Drag::_forget() {
    _entry = nullptr;
    if (std::exchange(_kind, nullptr) != nullptr) {
        if (std::exchange(_isBlocked, false)) {
            Q_EMIT blocked(QString());
        }
        Q_EMIT activeChanged(false);
    }
}

} // namespace Editor
