#include "document/History.h"

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

QAction* History::createUndoAction(QObject* parent, const QString& prefix) {
    return redirected(QUndoStack::createUndoAction(parent, prefix), *this, &History::undo);
}

QAction* History::createRedoAction(QObject* parent, const QString& prefix) {
    return redirected(QUndoStack::createRedoAction(parent, prefix), *this, &History::redo);
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
