#pragma once

#include "commands/ChangeRangeCommand.h"

namespace ZT::AnimCmd {

/// Moves the user range as a block with the keys inside it; the keys that it passes over take the frames it
/// leaves:
///
///     frames   10 11 12 13 14 15 16
///     before  [a  b  c  d  e] f  g
///     to 12    f  g [a  b  c  d  e]
///
/// Merges as ChangeRangeCommand does, with commands of its own kind.
class ZT_COMMANDS_EXPORT MoveRangeCommand : public ChangeRangeCommand {
public:
    /// Moves the range [oldStart, oldEnd] to @p newStart. @p keys are keys with the frames from which the new
    /// ones are computed; keys that are null, in no curve or outside both ranges stay. An empty map or a
    /// start that does not move changes the range only.
    MoveRangeCommand(ZT::AnimationMarkers* markers, const KeysIndexMap& keys, unsigned int oldStart,
                     unsigned int oldEnd, unsigned int newStart, bool finalCommand);
    ~MoveRangeCommand() override;

    /// 4: no other range command merges with this one.
    int id() const override;
};

} // namespace ZT::AnimCmd
