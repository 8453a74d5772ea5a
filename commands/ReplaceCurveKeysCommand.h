#pragma once

#include "commands/DetachedKeys.h"
#include "commands/Export.h"
#include "model/EditableMotionCurve.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QUndoCommand>

#include <optional>

namespace ZT {
class FirstException;
}

/// Edits as entries of a QUndoStack.
namespace ZT::AnimCmd {

/// Takes keys out of curves and puts others in, across any number of curves. Never merges.
///
/// The command owns every key that is outside a curve while the command lives: before and after undo the keys
/// to insert, after redo the keys that the curves gave up. It deletes them when it dies; keys in curves
/// belong to those. Keys to insert are handed over with the command and must be in no curve.
///
/// Signals are those of EditableMotionCurve::releaseAndInsertKeys(), curve by curve in no particular order.
/// What slots or a curve throw is thrown when all curves have had their turn; a curve whose turn ended so has
/// given nothing up and taken nothing in. Trying again does what was left, the opposite takes back what was
/// done.
class ZT_COMMANDS_EXPORT ReplaceCurveKeysCommand : public QUndoCommand {
public:
    /// Keys with frames, counted from 0.
    using KeysIndexMap = EditableMotionCurve::KeysIndexMap;
    /// The same for each curve.
    using CurvesKeysMap = QMap<ZT::EditableMotionCurve*, KeysIndexMap>;

    /// Per curve, the keys to take out and the keys to put in, each with its frame. A key that does not stand
    /// at its frame when the command is first done is not taken out.
    ReplaceCurveKeysCommand(QMap<ZT::EditableMotionCurve*, KeysIndexMap> keysToRemove,
                            QMap<ZT::EditableMotionCurve*, KeysIndexMap> keysToInsert);

    /// Takes out @p keys from where they stand now; null keys and keys in no curve are skipped.
    ReplaceCurveKeysCommand(QList<ZT::EditableMotionCurveKey*> keys,
                            QMap<ZT::EditableMotionCurve*, KeysIndexMap> keysToInsert);

    ~ReplaceCurveKeysCommand() override;

    /// redo() notes what the curves gave up, keys displaced by those put in among it; undo() puts just that
    /// back, each key at the frame that it left. A further redo() does the same with what undo() took out.
    /// Deliberate: neither asks whether it is its turn, but where an exception stopped the one before; see
    /// aRedoOrUndoInARowIsDoneAsWell().
    ///@{
    void undo() override;
    void redo() override;
    ///@}

protected:
    /// Puts in @p keysToInsert under another text, where %1 is the number of curves.
    ReplaceCurveKeysCommand(const QString& text, QMap<ZT::EditableMotionCurve*, KeysIndexMap> keysToInsert);

    /// How many curves the command names, for the texts that constructors make; redo() and undo() change it.
    ///@{
    int removedCurves() const { return static_cast<int>(_keysToRemove.size()); }
    int insertedCurves() const { return static_cast<int>(_keysToInsert.size()); }
    ///@}
    /// Names a key to take out of its curve, from where it stands now. Ignores null and keys in no curve.
    void addKeyToRemove(EditableMotionCurveKey* key);
    /// Names a key to put into @p curve at frame @p index and takes ownership; neither when one of them is
    /// null.
    void addKeyToInsert(EditableMotionCurveKey* key, EditableMotionCurve* curve, unsigned int index);

private:
    using CurvesSet = QSet<ZT::EditableMotionCurve*>;
    /// What a redo or undo has found and done.
    struct Outcome {
        bool isRedo;
        CurvesKeysMap standing; ///< the keys to insert that stood in their curve before
        CurvesKeysMap gone;     ///< what the curves gave up
    };

    void _forgetDeadKeys();
    CurvesSet _curves() const;
    void _conclude(Outcome outcome, CurvesSet done, FirstException& thrown);
    void _settle();
    /// What left the curves; the command owns it by then. Without an entry for a curve whose turn failed.
    CurvesKeysMap _replace(const CurvesSet& curves, const CurvesKeysMap& toRelease,
                           const CurvesKeysMap& toInsert, FirstException& thrown);
    /// The keys to insert that stand in their curve already, with their frames.
    static CurvesKeysMap _standingAmong(const CurvesKeysMap& inserted);
    static void _leaveOutNewcomers(const CurvesKeysMap& standing, const CurvesKeysMap& inserted,
                                   CurvesKeysMap& gone);
    static void _leaveOutStanding(const CurvesKeysMap& standing, const CurvesKeysMap& gone,
                                  CurvesKeysMap& inserted);
    static void _keepWhereNothingWasDone(const CurvesKeysMap& asked, CurvesKeysMap& gone);
    void _setReplaceText();
    void _own(const CurvesKeysMap& keys);

    CurvesKeysMap _keysToRemove;     ///< after redo, what the curves gave up
    CurvesKeysMap _keysToInsert;     ///< after undo, what the curves gave up
    bool _wasStopped = false;        ///< by an exception, at some place of the last redo or undo
    CurvesSet _doneIn;               ///< all after redo, none after undo, some where one of them was stopped
    std::optional<Outcome> _outcome; ///< until the two maps say it
    DetachedKeys _detachedKeys;
};

/// Puts keys into curves.
class ZT_COMMANDS_EXPORT AddCurveKeysCommand : public ReplaceCurveKeysCommand {
public:
    /// Per curve, the keys to hand over, with their frames.
    explicit AddCurveKeysCommand(QMap<ZT::EditableMotionCurve*, KeysIndexMap> keys);
    /// Does nothing when @p key or @p curve is null.
    AddCurveKeysCommand(ZT::EditableMotionCurveKey* key, ZT::EditableMotionCurve* curve, unsigned int index);
};

/// Takes keys out of their curves.
class ZT_COMMANDS_EXPORT RemoveCurveKeysCommand : public ReplaceCurveKeysCommand {
public:
    /// Null keys and keys in no curve are skipped.
    explicit RemoveCurveKeysCommand(QList<ZT::EditableMotionCurveKey*> keys);
    /// Does nothing when @p key is null or in no curve.
    explicit RemoveCurveKeysCommand(ZT::EditableMotionCurveKey* key);
};

} // namespace ZT::AnimCmd
