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
        QMultiMap<ZT::EditableMotionCurveKey*,
                  QPair<ZT::TangentSide, VQ::Math::Interpolation::InterpolationType>>
            tangentTypes;
        QMap<ZT::EditableMotionCurveKey*, QPair<float, float>> leftOffsets;
        QMap<ZT::EditableMotionCurveKey*, QPair<float, float>> rightOffsets;
        QMap<ZT::EditableMotionCurveKey*, bool> smooth;
        QMap<ZT::EditableMotionCurveKey*, bool> symmetrical;
        EditableMotionCurve::KeyRecords records; ///< the handles, for what no setter leads back to
    };

    ~ChangeKeyParamCommand() override;

    void undo() override;
    void redo() override = 0;

protected:
    explicit ChangeKeyParamCommand(const QSet<ZT::EditableMotionCurveKey*>& keys);
    explicit ChangeKeyParamCommand(ZT::EditableMotionCurveKey* key);

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
    ChangeInterpTypeCommand(const QMultiMap<ZT::EditableMotionCurveKey*, ZT::TangentSide>& tangents,
                            VQ::Math::Interpolation::InterpolationType type);
    ChangeInterpTypeCommand(ZT::EditableMotionCurveKey* key, ZT::TangentSide side,
                            VQ::Math::Interpolation::InterpolationType type);
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
    ChangeTangentParamCommand(const QSet<ZT::EditableMotionCurveKey*>& keys,
                              VQ::Math::Interpolation::InterpolationType type, bool smooth, bool symmetrical);
    void redo() override;

private:
    VQ::Math::Interpolation::InterpolationType _type;
    bool _smooth;
    bool _symmetrical;
};

/// Switches the smooth flag of keys: EditableMotionCurve::setKeysSmooth() for each curve.
class ZT_COMMANDS_EXPORT ChangeSmoothnessCommand : public ChangeKeyParamCommand {
public:
    ChangeSmoothnessCommand(const QSet<ZT::EditableMotionCurveKey*>& keys, bool smooth);
    ChangeSmoothnessCommand(ZT::EditableMotionCurveKey* key, bool smooth);
    void redo() override;

private:
    bool _smooth;
};

/// Switches the symmetrical flag of keys: EditableMotionCurve::setKeysSymmetrical() for each curve.
class ZT_COMMANDS_EXPORT ChangeSymmetryCommand : public ChangeKeyParamCommand {
public:
    ChangeSymmetryCommand(const QSet<ZT::EditableMotionCurveKey*>& keys, bool symmetrical);
    ChangeSymmetryCommand(ZT::EditableMotionCurveKey* key, bool symmetrical);
    void redo() override;

private:
    bool _symmetrical;
};

} // namespace ZT::AnimCmd
