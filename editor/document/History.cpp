#include "document/History.h"

#include "document/HistoryEntry.h"
#include "document/Macro.h"

#include <QAction>

namespace Editor {

namespace {

// Qt 5 has the action call the slot by its name, and so the one of History, Qt 6 that of QUndoStack.
QAction* redirected(QAction* action, History& history, void (History::*slot)()) {
    QObject::disconnect(action, nullptr, &history, nullptr);
    QObject::connect(action, &QAction::triggered, &history, slot);
    return action;
}

} // namespace

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

QAction* History::createUndoAction(QObject* parent, const QString& prefix) {
    return redirected(QUndoStack::createUndoAction(parent, prefix), *this, &History::undo);
}

QAction* History::createRedoAction(QObject* parent, const QString& prefix) {
    return redirected(QUndoStack::createRedoAction(parent, prefix), *this, &History::redo);
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
