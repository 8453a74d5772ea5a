#include "document/DragEntry.h"

#include <algorithm>
#include <utility>

namespace Editor {

void DragEntry::add(std::unique_ptr<QUndoCommand> step) {
    step->redo();
    if (_commands.empty() || !_commands.back()->mergeWith(step.get())) {
        _commands.push_back(std::move(step));
    }
    setText(lastCommand().text());
}

void DragEntry::undo() {
    _isDone = false;
    std::for_each(_commands.rbegin(), _commands.rend(), [](const auto& command) { command->undo(); });
}

void DragEntry::redo() {
    if (!std::exchange(_isDone, true)) {
        for (const auto& command : _commands) {
            command->redo();
        }
    }
}

} // namespace Editor
