#pragma once

#include "base/TangentSide.h"
#include "commands/Export.h"
#include "commands/MergeState.h"
#include "commands/MergeableCommand.h"
#include "model/EditableMotionCurve.h"

#include <QMap>
#include <QPair>
#include <QSet>
#include <QUndoCommand>

namespace ZT::AnimCmd {

/// Gives one handle of each of the given keys the same offset: the command of a handle drag.
///
/// The handles are captured when the command is built. redo() is EditableMotionCurve::moveTangents() for each
/// curve; undo() is the same with each key's own offset. Where a constraint leaves the opposite handle other
/// than it was, or than the steps of a drag had made it, EditableMotionCurve::_restoreHandles() follows. Keys
/// and curves belong to others. What slots throw is thrown when the command is done.
///
/// Deliberate: a step merges when it moves the same keys or the same side. One that moves other keys on the
/// same side is absorbed with its offset only; undo gives back what this command captured. See
/// stepsOnOtherKeysOfTheSameSideMerge().
class ZT_COMMANDS_EXPORT MoveTangentCommand : public QUndoCommand, public MergeableCommand {
public:
    /// @p first in frames and @p second in value units are the end of the handle relative to its key. Keys
    /// that are null or in no curve are left out.
    ///@{
    MoveTangentCommand(const QSet<ZT::EditableMotionCurveKey*>& keys, ZT::TangentSide side, float first,
                       float second, bool finalCommand);
    MoveTangentCommand(ZT::EditableMotionCurveKey* key, ZT::TangentSide side, float first, float second,
                       bool finalCommand);
    ///@}
    ~MoveTangentCommand() override;

    /// redo() and undo() emit for each curve the keys' tangentsChanged() and keysChanged(), and once more
    /// both where opposite handles are written back. mergeWith() takes the step's offset over and keeps keys,
    /// side and what undo() gives. id() is 2.
    ///@{
    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand* other) override;
    ///@}
    bool isFinalCommand() const override;

private:
    void _capture(ZT::EditableMotionCurveKey* key);

    MergeState _mergeState;
    ZT::TangentSide _side;
    QPair<float, float> _tangentOffset;
    QMap<ZT::EditableMotionCurve*, QSet<ZT::EditableMotionCurveKey*>> _keysByCurve;
    QMap<ZT::EditableMotionCurve*, QMap<ZT::EditableMotionCurveKey*, QPair<float, float>>> _oldOffsets;
    QMap<ZT::EditableMotionCurve*, EditableMotionCurve::KeyRecords> _oldRecords;
    bool _hasMerged = false;
    QMap<ZT::EditableMotionCurve*, EditableMotionCurve::KeyRecords> _reached; ///< what undo() found
};

} // namespace ZT::AnimCmd
