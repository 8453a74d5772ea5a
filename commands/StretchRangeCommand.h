#pragma once

#include "commands/ChangeRangeCommand.h"

namespace ZT::AnimCmd {

/// Which end of the range is dragged.
enum class StretchSide : int { end = 0, start = 1 };

/// Moves one end of the user range and rescales the frames of the keys inside it, one key per frame. Keys
/// behind the range follow its end, keys before it stay:
///
///     frames   10 . . . . 15 . . . . 20 . . . . 25
///     before  [a          b          c]         d
///     frames   10 . . . . . . . . . 20 . . . . . . . . . 30 . . . . 35
///     to 30   [a                    b                    c]         d
///
/// A range that would have fewer frames than keys on one curve is widened to hold them. Merges only with
/// steps of the drag that began at the same range.
class ZT_COMMANDS_EXPORT StretchRangeCommand : public ChangeRangeCommand {
public:
    /// Stretches [oldStart, oldEnd] so that the end named by @p stretchSide comes to @p newValue. @p keys are
    /// keys with the frames from which the new ones are computed; keys that are null or in no curve are left
    /// out. An end that does not move, a range that is or would be reversed, or an empty map gives a command
    /// that changes nothing.
    ///
    /// Deliberate: without a key inside, the range collapses; where the start comes too near to an end that
    /// is not above the number of keys, only the range changes. See
    /// aStretchWithoutKeysInsideCollapsesTheRange() and aStartStretchIsGivenUpOneFrameEarly().
    StretchRangeCommand(ZT::AnimationMarkers* markers, const KeysIndexMap& keys, unsigned int oldStart,
                        unsigned int oldEnd, unsigned int newValue, bool finalCommand,
                        StretchSide stretchSide);
    ~StretchRangeCommand() override;

    /// id() is 5. A step that was built from another old range is refused, which makes this command final.
    ///@{
    int id() const override;
    bool mergeWith(const QUndoCommand* other) override;
    ///@}

private:
    struct Candidate;
    using Candidates = std::vector<Candidate>;

    bool _makeRoom(bool startSide, unsigned int maxCount);
    void _reindex(ZT::EditableMotionCurve* curve, const Candidates& candidates);

    Range _dragBaseRange; ///< where the drag began
};

} // namespace ZT::AnimCmd
