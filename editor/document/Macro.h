#pragma once

#include <QString>
#include <QUndoCommand>

#include <memory>

class QUndoStack;

namespace Editor {

/// Edits on their way to one entry of the history: each command is done as it is added. Where commit() is not
/// reached, as when an exception passes, all are undone; the history, with what can be redone, is as it was.
class [[nodiscard]] Macro {
public:
    /// @p history must outlive the macro. @p text names the entry.
    Macro(QUndoStack& history, const QString& text);
    Macro(const Macro&) = delete;
    Macro& operator=(const Macro&) = delete;
    ~Macro();

    /// Does @p command. What redo() throws is thrown when the command has been undone as far as it can be.
    void add(std::unique_ptr<QUndoCommand> command);
    /// Puts the entry on the history, which owns it, without doing anything again. None without commands.
    void commit();

    /// The same for one command, whose text is the entry's.
    static void push(QUndoStack& history, std::unique_ptr<QUndoCommand> command);

private:
    class Entry;

    QUndoStack& _history;
    std::unique_ptr<Entry> _entry; ///< null once it is committed
};

} // namespace Editor
