#pragma once

#include "commands/Export.h"
#include "model/EditableMotionCurve.h"

#include <QMap>
#include <QMultiMap>
#include <QSet>
#include <QUndoCommand>

namespace ZT::AnimCmd {

/// What the commands that change key parameters share: the keys by curve, and their state before.
///
/// Everything is captured when the command is built; keys that are null or in no curve then are left out.
/// undo() always gives back that state, automatic handles as their neighbours have them:
/// EditableMotionCurve::restoreKeys() once for each curve, and where its rules leave a handle other than it
/// was, EditableMotionCurve::_restoreHandles(). Never merges. Keys and curves belong to others. What slots
/// throw is thrown when the command is done.
class ZT_COMMANDS_EXPORT ChangeKeyParamCommand : public QUndoCommand {
public:
    /// The state of one curve's keys, in the order in which EditableMotionCurve::restoreKeys() takes it.
    struct CurveKeySave {
        /// Both sides of each key.
        QMultiMap<ZT::EditableMotionCurveKey*,
                  QPair<ZT::TangentSide, VQ::Math::Interpolation::InterpolationType>>
            tangentTypes;
        /// Ends of handles relative to their key: frames, then value units.
        ///@{
        QMap<ZT::EditableMotionCurveKey*, QPair<float, float>> leftOffsets;
        QMap<ZT::EditableMotionCurveKey*, QPair<float, float>> rightOffsets;
        ///@}
        /// The flags, whether or not the types let them act.
        ///@{
        QMap<ZT::EditableMotionCurveKey*, bool> smooth;
        QMap<ZT::EditableMotionCurveKey*, bool> symmetrical;
        ///@}
        EditableMotionCurve::KeyRecords records; ///< the handles, for what no setter leads back to
    };

    ~ChangeKeyParamCommand() override;

    /// Emits for each curve the keys' signals and keysChanged(), and where handles are written back beyond
    /// the setters' rules their tangentsChanged() and keysChanged() once more. Keys that have left the curve
    /// are passed over.
    void undo() override;
    /// One bulk edit for each curve, which passes over keys that have left it: the keys' signals, then
    /// keysChanged().
    void redo() override = 0;

protected:
    /// Captures the keys with the state of both their tangents.
    ///@{
    explicit ChangeKeyParamCommand(const QSet<ZT::EditableMotionCurveKey*>& keys);
    explicit ChangeKeyParamCommand(ZT::EditableMotionCurveKey* key);
    ///@}

    /// The captured keys, each under the curve that it was in then.
    const QMap<ZT::EditableMotionCurve*, QSet<ZT::EditableMotionCurveKey*>>& keysByCurve() const {
        return _keysByCurve;
    }

private:
    void saveKeys(const QSet<ZT::EditableMotionCurveKey*>& keys);

    QMap<ZT::EditableMotionCurve*, QSet<ZT::EditableMotionCurveKey*>> _keysByCurve;
    QMap<ZT::EditableMotionCurve*, CurveKeySave> _savedState;
};

/// Gives chosen tangents one interpolation type: EditableMotionCurve::setTangentsType() for each curve.
class ZT_COMMANDS_EXPORT ChangeInterpTypeCommand : public ChangeKeyParamCommand {
public:
    /// Captures both tangents of each key, since the constraints may move the handle of the other side too. A
    /// value that is no side names no tangent. The text names the type as it is displayed.
    ///@{
    ChangeInterpTypeCommand(const QMultiMap<ZT::EditableMotionCurveKey*, ZT::TangentSide>& tangents,
                            VQ::Math::Interpolation::InterpolationType type);
    ChangeInterpTypeCommand(ZT::EditableMotionCurveKey* key, ZT::TangentSide side,
                            VQ::Math::Interpolation::InterpolationType type);
    ///@}
    /// Emits for each curve the keys' tangentsChanged(), twice for a change that moves an automatic handle,
    /// then keysChanged().
    void redo() override;

private:
    void addTangent(ZT::EditableMotionCurveKey* key, ZT::TangentSide side);

    QMap<ZT::EditableMotionCurve*, QMultiMap<ZT::EditableMotionCurveKey*, ZT::TangentSide>> _tangentsByCurve;
    VQ::Math::Interpolation::InterpolationType _type;
};

/// Gives keys one type on both sides and one state of both flags: EditableMotionCurve::setKeysParam() for
/// each curve.
class ZT_COMMANDS_EXPORT ChangeTangentParamCommand : public ChangeKeyParamCommand {
public:
    /// Both tangents get @p type before the flags get their turn: one that is switched on makes them
    /// "bezier".
    ChangeTangentParamCommand(const QSet<ZT::EditableMotionCurveKey*>& keys,
                              VQ::Math::Interpolation::InterpolationType type, bool smooth, bool symmetrical);
    /// Emits for each curve, key by key, tangentsChanged(), smoothChanged() and symmetricalChanged(), each
    /// only if it applies, then keysChanged().
    void redo() override;

private:
    VQ::Math::Interpolation::InterpolationType _type;
    bool _smooth;
    bool _symmetrical;
};

/// Switches the smooth flag of keys: EditableMotionCurve::setKeysSmooth() for each curve.
class ZT_COMMANDS_EXPORT ChangeSmoothnessCommand : public ChangeKeyParamCommand {
public:
    /// Captures types and handles too, since a flag that is switched on changes them.
    ///@{
    ChangeSmoothnessCommand(const QSet<ZT::EditableMotionCurveKey*>& keys, bool smooth);
    ChangeSmoothnessCommand(ZT::EditableMotionCurveKey* key, bool smooth);
    ///@}
    /// Emits for each curve the keys' smoothChanged(), then keysChanged().
    void redo() override;

private:
    bool _smooth;
};

/// Switches the symmetrical flag of keys: EditableMotionCurve::setKeysSymmetrical() for each curve.
class ZT_COMMANDS_EXPORT ChangeSymmetryCommand : public ChangeKeyParamCommand {
public:
    /// Captures types and handles too, since a flag that is switched on changes them.
    ///@{
    ChangeSymmetryCommand(const QSet<ZT::EditableMotionCurveKey*>& keys, bool symmetrical);
    ChangeSymmetryCommand(ZT::EditableMotionCurveKey* key, bool symmetrical);
    ///@}
    /// Emits for each curve the keys' symmetricalChanged(), then keysChanged().
    void redo() override;

private:
    bool _symmetrical;
};

} // namespace ZT::AnimCmd
