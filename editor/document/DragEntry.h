#pragma once

#include <QUndoCommand>

#include <memory>
#include <vector>

namespace Editor {

/// What one drag does, step by step, before it enters the history and there: steps that the library's
/// commands merge are one command. What is done already is not done again when the history takes the entry.
class DragEntry : public QUndoCommand {
public:
    /// Does the step, which becomes part of what is undone and redone. Its text becomes the entry's.
    void add(std::unique_ptr<QUndoCommand> step);

    void undo() override;
    /// Does nothing while all is done.
    void redo() override;

    /// The command of the last steps; there must be one.
    const QUndoCommand& lastCommand() const { return *_commands.back(); }

private:
    std::vector<std::unique_ptr<QUndoCommand>> _commands; ///< more than one where one took in no further step
    bool _isDone = true;
};

} // namespace Editor
