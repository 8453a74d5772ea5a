#pragma once

#include "commands/DetachedKeys.h"
#include "commands/Export.h"
#include "commands/MergeState.h"
#include "commands/MergeableCommand.h"
#include "model/EditableMotionCurve.h"

#include <QMap>
#include <QPointer>
#include <QString>
#include <QUndoCommand>

#include <vector>

namespace ZT {
class AnimationMarkers;
}

namespace ZT::AnimCmd {

/// Gives the markers another user range and, in the subclasses, keys other frames with it.
///
/// redo() and undo() reorganise each curve (EditableMotionCurve::reorganizeKeys()) and then exchange the
/// markers' range with the kept one: setRangeStartIndex(), then setRangeEndIndex(). Keys that a curve could
/// not place are in no curve then; failedKeys() names them. The command owns those that left their curve for
/// it until a curve has them again, and deletes them when it dies; those that undo() could not place it puts
/// back then, at their frame or behind the last key, since older entries of the history name them. One that
/// somebody had taken out before stays theirs.
///
/// Where the keys stood is captured when the command is built. Steps of one drag merge without further test.
/// The markers belong to others and outlive the command's use; curves and placed keys belong to others too.
/// What slots throw is thrown when the command is done.
class ZT_COMMANDS_EXPORT ChangeRangeCommand : public QUndoCommand, public MergeableCommand {
public:
    /// Keys with frames, counted from 0.
    using KeysIndexMap = EditableMotionCurve::KeysIndexMap;

    /// By itself it changes the range only, from what the markers show to [rangeStart, rangeEnd]; undo puts
    /// @p keys, whose frames in the map are not used, where they stand now.
    ChangeRangeCommand(ZT::AnimationMarkers* markers, const KeysIndexMap& keys, unsigned int rangeStart,
                       unsigned int rangeEnd, bool finalCommand);
    ~ChangeRangeCommand() override;

    /// redo() and undo() emit for each curve what its reorganizeKeys() emits, then the markers' signals.
    /// mergeWith() takes steps with the same id(), which is 3, while the drag is open: redo() then gives the
    /// step's keys the step's frames, undo() those that only the step names theirs too, and the text speaks
    /// of the whole drag. The step gives its failedKeys() away, although it comes as a constant: the history
    /// deletes it.
    ///@{
    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand* other) override;
    ///@}
    bool isFinalCommand() const override;

    /// The keys that the last redo() or undo() could not place, and those of steps merged since.
    const std::vector<ZT::EditableMotionCurveKey*>& failedKeys() const noexcept { return _failedKeys; }

protected:
    /// For each curve keys of it with frames, counted from 0.
    using CurvesKeysMap = QMap<ZT::EditableMotionCurve*, QMap<ZT::EditableMotionCurveKey*, unsigned int>>;
    /// What the markers take for the user range.
    struct Range {
        /// The first and the last frame, both of them in the range.
        ///@{
        unsigned int start = 0;
        unsigned int end = 0;
        ///@}
    };

    /// Has each curve give its keys these frames. failedKeys() starts anew and names those of all curves;
    /// the command owns those that left their curve, until a curve holds them. What slots throw is thrown
    /// when all curves have had their turn.
    void reorganizeKeys(const CurvesKeysMap& indices);
    /// Exchanges the markers' range with the pending one.
    void updateRange();

    /// What the markers have at this moment.
    Range markersRange() const;
    /// Forgets all keys: the command changes nothing but the range.
    void forgetKeys();
    /// Sets a template with the places %1 to %4 and the text made from it.
    void setRangeText(const QString& textTemplate, const Range& from, const Range& to);
    /// For a subclass whose mergeWith() has tests of its own: the attempt begins before them.
    MergeState& mergeState() noexcept { return _mergeState; }

    CurvesKeysMap newIndices; ///< what redo() gives; filled by the subclasses
    Range pendingRange;       ///< what the next redo() or undo() gives the markers

private:
    using Keys = std::vector<EditableMotionCurveKey*>;
    /// A key that stood in a curve before the command, and could not be put back there.
    struct Missing {
        QPointer<EditableMotionCurveKey> key;
        QPointer<EditableMotionCurve> curve;
        unsigned int frame;
    };

    void _noteMissing();
    void _apply(const CurvesKeysMap& indices);
    void _takeFailedKeys(EditableMotionCurve& curve, Keys& failed, const Keys& others);

    MergeState _mergeState;
    CurvesKeysMap _oldIndices; ///< what undo() gives
    QString _textTemplate;
    ZT::AnimationMarkers* _markers;
    std::vector<ZT::EditableMotionCurveKey*> _failedKeys;
    std::vector<Missing> _missing; ///< by undo()
    DetachedKeys _detachedKeys;
};

} // namespace ZT::AnimCmd
