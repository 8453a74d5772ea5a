#pragma once

#include <QString>

namespace Editor {

/// What the exception says that is being handled; never empty. A text that there is no memory for is left
/// untranslated.
QString textOfException() noexcept;

/// Does @p action. Returns what an exception that leaves it says, empty where none does: Qt, which calls the
/// slots of actions, lets none through. Takes no memory of its own where all goes well.
template <class Action>
QString attempt(const Action& action) noexcept {
    try {
        action();
        return {};
    } catch (...) {
        return textOfException();
    }
}

} // namespace Editor
