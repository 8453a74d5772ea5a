#pragma once

#include <QString>
#include <QUndoStack>

class QAction;

namespace Editor {

/// The history of a document, which says that it is about to change before it does. Who has done something
/// that is no entry yet, as a drag under way has, makes it one then, since entries are undone in the order in
/// which they were done.
///
/// QUndoStack's functions of the same names are not virtual: who has a History keeps it as one.
class History : public QUndoStack {
    Q_OBJECT

public:
    using QUndoStack::QUndoStack;

    /// As QUndoStack's, which takes the entry and does it. All of these emit aboutToChange() first.
    void push(QUndoCommand* entry);
    void beginMacro(const QString& text);
    void clear();

    /// As QUndoStack's, but what they trigger is undo() and redo() of this class. @p parent owns them.
    QAction* createUndoAction(QObject* parent, const QString& prefix = {});
    QAction* createRedoAction(QObject* parent, const QString& prefix = {});

public Q_SLOTS:
    void undo();
    void redo();
    void setIndex(int index);
    void setClean();

Q_SIGNALS:
    /// Nothing has changed yet; an entry that is pushed now comes before the change.
    void aboutToChange();
};

} // namespace Editor
