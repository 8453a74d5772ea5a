#include "document/History.h"

#include "document/HistoryEntry.h"
#include "document/Macro.h"

namespace Editor {

void History::push(QUndoCommand* command) {
    Macro::push(*this, std::unique_ptr<QUndoCommand>(command));
}

void History::take(std::unique_ptr<HistoryEntry> entry) {
    QUndoStack::push(entry.release());
}

void History::clear() {
    Q_EMIT aboutToChange();
    QUndoStack::clear();
}

void History::undo() {
    Q_EMIT aboutToChange();
    const int before = index();
    QUndoStack::undo();
    _rethrow(before);
}

void History::redo() {
    Q_EMIT aboutToChange();
    const int before = index();
    QUndoStack::redo();
    _rethrow(before);
}

void History::setIndex(int index) {
    Q_EMIT aboutToChange();
    const int before = QUndoStack::index();
    QUndoStack::setIndex(index);
    _rethrow(before);
}

void History::setClean() {
    Q_EMIT aboutToChange();
    QUndoStack::setClean();
}

// What the entries between there and here have kept, in the order in which they were undone or redone.
void History::_rethrow(int before) const {
    const auto rethrow = [this](int i) {
        if (const auto* const entry = dynamic_cast<const HistoryEntry*>(command(i))) {
            entry->thrown().rethrow();
        }
    };
    for (int i = before - 1; i >= index(); --i) {
        rethrow(i);
    }
    for (int i = before; i < index(); ++i) {
        rethrow(i);
    }
}

} // namespace Editor
