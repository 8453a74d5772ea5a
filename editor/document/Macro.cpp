#include "document/Macro.h"

#include "document/History.h"

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

namespace Editor {

namespace {

// Slots that have thrown when a command was done may do so again when it is undone; the command goes on
// behind them, and there is nobody left to tell.
void takeBack(QUndoCommand& command) noexcept {
    try {
        command.undo();
    } catch (...) { // NOLINT(bugprone-empty-catch)
    }
}

} // namespace

// Its commands are done before the history has it: the first redo(), by which the history takes it, does
// nothing.
class Macro::Entry : public QUndoCommand {
public:
    using QUndoCommand::QUndoCommand;

    void undo() override {
        std::for_each(_commands.rbegin(), _commands.rend(), [](const auto& command) { command->undo(); });
    }

    void redo() override {
        if (!std::exchange(_isDone, false)) {
            std::for_each(_commands.begin(), _commands.end(), [](const auto& command) { command->redo(); });
        }
    }

    void add(std::unique_ptr<QUndoCommand> command) {
        _commands.push_back(std::move(command));
        try {
            _commands.back()->redo();
        } catch (...) {
            takeBack(*_commands.back());
            _commands.pop_back();
            throw;
        }
    }

    void takeAllBack() noexcept {
        std::for_each(_commands.rbegin(), _commands.rend(), [](const auto& command) { takeBack(*command); });
    }

    bool isEmpty() const noexcept { return _commands.empty(); }

private:
    std::vector<std::unique_ptr<QUndoCommand>> _commands;
    bool _isDone = true;
};

Macro::Macro(History& history, const QString& text)
    : _history(history)
    , _entry(std::make_unique<Entry>(text)) {
    Q_EMIT history.aboutToChange();
}

Macro::~Macro() {
    if (_entry != nullptr) {
        _entry->takeAllBack();
    }
}

void Macro::add(std::unique_ptr<QUndoCommand> command) {
    _entry->add(std::move(command));
}

void Macro::commit() {
    if (!_entry->isEmpty()) {
        _history.push(_entry.release());
    }
}

void Macro::push(History& history, std::unique_ptr<QUndoCommand> command) {
    Macro macro(history, command->text());
    macro.add(std::move(command));
    macro.commit();
}

} // namespace Editor
