#pragma once

#include "model/FirstException.h"

#include <QUndoCommand>

#include <memory>
#include <vector>

namespace Editor {

/// Commands that are one entry of the history. They are done as they are added, before the history has the
/// entry: what is done is not done again when the history takes it.
///
/// No exception leaves undo() and redo(), since a QUndoStack that one passes through loses count of what is
/// done. All commands are carried through, and what the first one threw is kept for who has the history.
class HistoryEntry final : public QUndoCommand {
public:
    explicit HistoryEntry(const QString& text)
        : QUndoCommand(text) {}

    /// Does @p command. What redo() throws is thrown when the command has been undone as far as it can be;
    /// the entry is what it was.
    void add(std::unique_ptr<QUndoCommand> command);
    /// Has the command before the last one take in the last one, if it does. There must be one.
    void mergeLast() noexcept;
    /// Undoes the last command, which there must be, and lets go of it. What undo() throws is thrown then.
    void dropLast();

    bool isEmpty() const noexcept { return _commands.empty(); }
    /// There must be one.
    const QUndoCommand& lastCommand() const { return *_commands.back(); }

    void undo() noexcept override;
    /// Does nothing while all is done.
    void redo() noexcept override;
    /// What the last undo() or redo() has kept.
    const ZT::FirstException& thrown() const noexcept { return _thrown; }

private:
    std::vector<std::unique_ptr<QUndoCommand>> _commands;
    bool _isDone = true;
    ZT::FirstException _thrown;
};

} // namespace Editor
