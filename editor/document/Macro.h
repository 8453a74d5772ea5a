#pragma once

#include <QString>
#include <QUndoCommand>

#include <memory>

namespace Editor {

class History;
class HistoryEntry;

/// Edits on their way to one entry of the history: each command is done as it is added. Where commit() is not
/// reached, as when an exception passes, all are undone; the history, with what can be redone, is as it was.
class [[nodiscard]] Macro {
public:
    /// Says that @p history is about to change, since commands are done before it has them. It must outlive
    /// the macro. @p text names the entry.
    Macro(History& history, const QString& text);
    Macro(const Macro&) = delete;
    Macro& operator=(const Macro&) = delete;
    ~Macro();

    /// Does @p command. What redo() throws is thrown when the command has been undone as far as it can be.
    void add(std::unique_ptr<QUndoCommand> command);
    /// Puts the entry on the history, which owns it, without doing anything again. None without commands.
    void commit();

    /// The same for one command, whose text is the entry's.
    static void push(History& history, std::unique_ptr<QUndoCommand> command);

private:
    History& _history;
    std::unique_ptr<HistoryEntry> _entry; ///< null once it is committed
};

} // namespace Editor
