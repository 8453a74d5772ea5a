#pragma once

#include "commands/Export.h"
#include "commands/MergeState.h"
#include "commands/MergeableCommand.h"
#include "model/EditableMotionCurve.h"

#include <QUndoCommand>

#include <functional>
#include <map>
#include <vector>

namespace ZT::AnimCmd {

/// Moves keys of any curves to new frames and values: the command of a key drag.
///
/// Where the keys stood is captured when the command is built. redo() is EditableMotionCurve::moveKeys() for
/// each curve; undo() is the same with the captured positions. Where keys blocked each other's way, so that
/// some are elsewhere than they were, undo() and every redo() but the first end with
/// EditableMotionCurve::reorganizeKeys() for those; a value that comparison takes for the captured one, a
/// zero of the other sign, is written by EditableMotionCurve::_restoreValues(). Merges with a step that moves
/// exactly the same keys. Keys and curves belong to others. What slots throw is thrown when the command is
/// done.
class ZT_COMMANDS_EXPORT MoveCurveKeysCommand : public QUndoCommand, public MergeableCommand {
public:
    /// Keys with positions: x the frame, counted from 0, y the value.
    using KeyPosMap = EditableMotionCurve::KeyPosMap;

    /// @p positions: x the target frame, y the target value. Keys that are null or in no curve are left out.
    MoveCurveKeysCommand(const KeyPosMap& positions, bool finalCommand);
    ~MoveCurveKeysCommand() override;

    /// redo() and undo() emit for each curve what its moveKeys() emits; then, where keys are elsewhere, what
    /// reorganizeKeys() emits, and for values that are written back valueChanged() and keysChanged().
    /// mergeWith() takes the step's targets over and keeps the captured positions; keys that changed curves
    /// between the steps still are the same keys. id() is 1.
    ///@{
    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand* other) override;
    ///@}
    bool isFinalCommand() const override;

private:
    /// Where a key stood, and its value.
    struct Origin {
        ZT::EditableMotionCurveKey* key;
        unsigned int frame;
        float value;
    };
    using Origins = std::vector<Origin>;
    // One entry for each curve; keys in ascending address order.
    using CurvesTargets = std::map<ZT::EditableMotionCurve*, EditableMotionCurve::KeyMoves, std::less<>>;
    using CurvesOrigins = std::map<ZT::EditableMotionCurve*, Origins, std::less<>>;

    void _finishRedo(EditableMotionCurve& curve) const;
    static void _moveBack(EditableMotionCurve& curve, const Origins& origins);
    void _notePlaces();
    static void _finishMove(EditableMotionCurve& curve, const Origins& places);
    static void _restoreValues(EditableMotionCurve& curve, const Origins& origins);

    CurvesTargets _targets; ///< what redo() gives
    CurvesOrigins _origins; ///< what undo() gives
    CurvesOrigins _reached; ///< where undo() found the keys, in the order of the targets
    bool _hasMerged = false;
    MergeState _mergeState;
};

} // namespace ZT::AnimCmd
