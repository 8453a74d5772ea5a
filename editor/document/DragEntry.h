#pragma once

#include <QUndoCommand>

#include <functional>
#include <memory>

namespace Editor {

/// A drag in the history: the library's command of the steps so far. It takes in steps of its own drag only,
/// and leaves no trace when it is cancelled.
class DragEntry : public QUndoCommand {
public:
    /// @p drag tells drags apart.
    DragEntry(std::unique_ptr<QUndoCommand> command, int drag);

    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand* other) override;

    const QUndoCommand& command() const noexcept { return *_command; }

    /// From the next undo() on the entry is obsolete, which has QUndoStack delete it.
    void cancel() noexcept { _isCancelled = true; }
    /// Undoes all steps, then makes another command, which captures what it finds, and does that.
    void restart(const std::function<std::unique_ptr<QUndoCommand>()>& make);

private:
    std::unique_ptr<QUndoCommand> _command;
    int _drag;
    bool _isCancelled = false;
};

} // namespace Editor
