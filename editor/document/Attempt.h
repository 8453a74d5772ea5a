#pragma once

#include <QString>

#include <functional>

namespace Editor {

/// Does @p action. Returns what an exception that leaves it says, empty where none does: Qt, which calls the
/// slots of actions, lets none through.
QString attempt(const std::function<void()>& action) noexcept;

} // namespace Editor
