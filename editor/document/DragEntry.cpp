#include "document/DragEntry.h"

#include <utility>

namespace Editor {

namespace {

constexpr int dragId = 1000; // The library's commands have small ones.

} // namespace

DragEntry::DragEntry(std::unique_ptr<QUndoCommand> command, int drag)
    : _command(std::move(command))
    , _drag(drag) {
    setText(_command->text());
}

void DragEntry::undo() {
    _command->undo();
    setObsolete(_isCancelled);
}

void DragEntry::redo() {
    _command->redo();
}

int DragEntry::id() const {
    return dragId;
}

bool DragEntry::mergeWith(const QUndoCommand* other) {
    const auto* const step = dynamic_cast<const DragEntry*>(other);
    if (step == nullptr || step->_drag != _drag || !_command->mergeWith(step->_command.get())) {
        return false;
    }
    setText(_command->text());
    return true;
}

void DragEntry::restart(const std::function<std::unique_ptr<QUndoCommand>()>& make) {
    _command->undo();
    _command = make();
    _command->redo();
    setText(_command->text());
}

} // namespace Editor
