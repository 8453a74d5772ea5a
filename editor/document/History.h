#pragma once

#include <QUndoStack>

#include <memory>

namespace Editor {

class HistoryEntry;

/// The history of a document, which says that it is about to change before it does. Who has done something
/// that is no entry yet, as a drag under way has, makes it one then, since entries are undone in the order in
/// which they were done.
///
/// Slots may throw. A command that throws when it is done for the first time is undone and leaves no entry.
/// An undo, a redo and a jump are carried through to their end, the index moves along, and what the first
/// command threw is thrown then: what index() says is done is done, but for keys that a slot kept out of
/// their curve, which wait with their entry for the next try. For this every entry is a HistoryEntry.
///
/// QUndoStack's functions of the same names are not virtual: who has a History keeps it as one, and
/// connects anew the actions that QUndoStack makes.
class History : public QUndoStack {
    Q_OBJECT

public:
    using QUndoStack::QUndoStack;

    /// Takes @p command, does it, and makes it an entry of its own. Emits aboutToChange() first, as all but
    /// take() do.
    void push(QUndoCommand* command);
    /// Puts an entry on top whose commands are done. Who did them has emitted aboutToChange() before.
    void take(std::unique_ptr<HistoryEntry> entry);
    void clear();

public Q_SLOTS:
    void undo();
    void redo();
    void setIndex(int index);
    void setClean();

Q_SIGNALS:
    /// Nothing has changed yet; an entry that is pushed now comes before the change.
    void aboutToChange();

private:
    void _rethrow(int before) const;
};

} // namespace Editor
