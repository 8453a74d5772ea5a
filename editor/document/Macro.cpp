#include "document/Macro.h"

#include "document/History.h"
#include "document/HistoryEntry.h"

#include <utility>

namespace Editor {

Macro::Macro(History& history, const QString& text)
    : _history(history)
    , _entry(std::make_unique<HistoryEntry>(text)) {
    Q_EMIT history.aboutToChange();
}

// Slots that have thrown when a command was done may do so again when it is undone; there is nobody left to
// tell.
Macro::~Macro() {
    if (_entry != nullptr) {
        _entry->undo();
    }
}

void Macro::add(std::unique_ptr<QUndoCommand> command) {
    _entry->add(std::move(command));
}

void Macro::commit() {
    if (!_entry->isEmpty()) {
        _history.take(std::move(_entry));
    }
}

void Macro::push(History& history, std::unique_ptr<QUndoCommand> command) {
    Macro macro(history, command->text());
    macro.add(std::move(command));
    macro.commit();
}

} // namespace Editor
