#include "document/History.h"

namespace Editor {

void History::push(QUndoCommand* entry) {
    Q_EMIT aboutToChange();
    QUndoStack::push(entry);
}

void History::beginMacro(const QString& text) {
    Q_EMIT aboutToChange();
    QUndoStack::beginMacro(text);
}

void History::clear() {
    Q_EMIT aboutToChange();
    QUndoStack::clear();
}

void History::undo() {
    Q_EMIT aboutToChange();
    QUndoStack::undo();
}

void History::redo() {
    Q_EMIT aboutToChange();
    QUndoStack::redo();
}

void History::setIndex(int index) {
    Q_EMIT aboutToChange();
    QUndoStack::setIndex(index);
}

void History::setClean() {
    Q_EMIT aboutToChange();
    QUndoStack::setClean();
}

} // namespace Editor
