#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace Editor {

/// The greatest frame that a key or a marker can have.
constexpr unsigned int lastPossibleFrame = std::numeric_limits<unsigned int>::max();

/// The frame that lies @p distance frames, rounded, from @p frame, or the first or last possible one before
/// it.
inline unsigned int movedBy(unsigned int frame, double distance) {
    return static_cast<unsigned int>(
        std::clamp(frame + std::round(distance), 0.0, double{lastPossibleFrame}));
}

} // namespace Editor
