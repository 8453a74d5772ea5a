#pragma once

#include <limits>

namespace Editor {

/// The greatest frame that a key or a marker can have.
constexpr unsigned int lastPossibleFrame = std::numeric_limits<unsigned int>::max();

} // namespace Editor
