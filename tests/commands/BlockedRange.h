#pragma once

#include "CommandHarness.h"
#include "commands/MoveRangeCommand.h"

#include <vector>

namespace Harness {

/// Keys a, b and c at 10, 11 and 13. Moving the range [10, 11] to 12 with only a and b named sends b to c's
/// frame, where it cannot be placed.
struct Blocked {
    Scene scene;
    Keys keys = scene.add({10, 11, 13});
    std::vector<QPointer<Key>> watched = watch(keys);

    ZT::AnimCmd::MoveRangeCommand* move(unsigned int newStart = 12, bool finalCommand = false) {
        return new ZT::AnimCmd::MoveRangeCommand(&scene.markers(), {{keys[0], 10}, {keys[1], 11}}, 10, 11,
                                                 newStart, finalCommand);
    }
};

} // namespace Harness
