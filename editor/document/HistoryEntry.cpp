#include "document/HistoryEntry.h"

#include <algorithm>
#include <utility>

namespace Editor {

using ZT::FirstException;

void HistoryEntry::add(std::unique_ptr<QUndoCommand> command) {
    _commands.push_back(std::move(command)); // First: a command that is done is never outside the entry.
    FirstException thrown;
    if (!thrown.guard([&] { _commands.back()->redo(); })) {
        thrown.guard([&] { dropLast(); });
        thrown.rethrow();
    }
}

void HistoryEntry::mergeLast() noexcept {
    // A command that has no memory to merge stays behind the one before.
    FirstException().guard([&] {
        if (_commands.size() > 1 && (*(_commands.end() - 2))->mergeWith(_commands.back().get())) {
            _commands.pop_back();
        }
    });
}

void HistoryEntry::dropLast() {
    FirstException thrown;
    thrown.guard([&] { _commands.back()->undo(); });
    _commands.pop_back();
    thrown.rethrow();
}

void HistoryEntry::undo() noexcept {
    _isDone = false;
    _thrown = FirstException();
    std::for_each(_commands.rbegin(), _commands.rend(),
                  [this](const auto& command) { _thrown.guard([&] { command->undo(); }); });
}

void HistoryEntry::redo() noexcept {
    _thrown = FirstException();
    if (!std::exchange(_isDone, true)) {
        for (const auto& command : _commands) {
            _thrown.guard([&] { command->redo(); });
        }
    }
}

} // namespace Editor
