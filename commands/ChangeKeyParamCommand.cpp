#include "commands/ChangeKeyParamCommand.h"

#include "commands/ForEachCurve.h"

#include <QCoreApplication>

namespace ZT::AnimCmd {

using VQ::Math::Interpolation::InterpolationType;
using KeysSet = EditableMotionCurve::KeysSet;

ChangeKeyParamCommand::ChangeKeyParamCommand(const KeysSet& keys) {
    saveKeys(keys);
}

ChangeKeyParamCommand::ChangeKeyParamCommand(EditableMotionCurveKey* key)
    : ChangeKeyParamCommand(KeysSet{key}) {}

ChangeKeyParamCommand::~ChangeKeyParamCommand() = default;

void ChangeKeyParamCommand::saveKeys(const KeysSet& keys) {
    for (EditableMotionCurveKey* const key : keys) {
        EditableMotionCurve* const curve = key != nullptr ? key->getParentCurve() : nullptr;
        if (curve == nullptr) {
            continue;
        }
        CurveKeySave& save = _savedState[curve];
        save.leftOffsets.insert(key, key->getTangentOffset(TangentSide::left));
        save.tangentTypes.insert(key, {TangentSide::left, key->getTangentType(TangentSide::left)});
        save.rightOffsets.insert(key, key->getTangentOffset(TangentSide::right));
        save.tangentTypes.insert(key, {TangentSide::right, key->getTangentType(TangentSide::right)});
        save.smooth.insert(key, key->isSmooth());
        save.symmetrical.insert(key, key->isSymmetrical());
        save.records.emplace_back(key, key->baseMotionCurveKey());
        _keysByCurve[curve].insert(key);
    }
}

void ChangeKeyParamCommand::undo() {
    forEachCurve(_savedState, [](EditableMotionCurve& curve, const CurveKeySave& save) {
        FirstException thrown;
        thrown.guard([&] {
            curve.restoreKeys(save.tangentTypes, save.leftOffsets, save.rightOffsets, save.smooth,
                              save.symmetrical);
        });
        thrown.guard([&] { curve._restoreHandles(save.records); });
        thrown.rethrow();
    });
}

ChangeInterpTypeCommand::ChangeInterpTypeCommand(
    const QMultiMap<EditableMotionCurveKey*, TangentSide>& tangents, InterpolationType type)
    : ChangeKeyParamCommand(KeysSet(tangents.keyBegin(), tangents.keyEnd()))
    , _type(type) {
    for (auto entry = tangents.cbegin(); entry != tangents.cend(); ++entry) {
        addTangent(entry.key(), entry.value());
    }
    setText(QCoreApplication::translate("ZT::AnimCmd::ChangeInterpTypeCommand",
                                        "Change interpolation type of a set of tangents to %1")
                .arg(interpolTypeToString(type)));
}

ChangeInterpTypeCommand::ChangeInterpTypeCommand(EditableMotionCurveKey* key, TangentSide side,
                                                 InterpolationType type)
    : ChangeKeyParamCommand(key)
    , _type(type) {
    addTangent(key, side);
    setText(QCoreApplication::translate("ZT::AnimCmd::ChangeInterpTypeCommand",
                                        "Change interpolation type of a tangent to %1")
                .arg(interpolTypeToString(type)));
}

void ChangeInterpTypeCommand::addTangent(EditableMotionCurveKey* key, TangentSide side) {
    if (key != nullptr && key->getParentCurve() != nullptr) {
        _tangentsByCurve[key->getParentCurve()].insert(key, side);
    }
}

void ChangeInterpTypeCommand::redo() {
    forEachCurve(_tangentsByCurve, [&](EditableMotionCurve& curve, const auto& tangents) {
        curve.setTangentsType(tangents, _type);
    });
}

ChangeTangentParamCommand::ChangeTangentParamCommand(const KeysSet& keys, InterpolationType type, bool smooth,
                                                     bool symmetrical)
    : ChangeKeyParamCommand(keys)
    , _type(type)
    , _smooth(smooth)
    , _symmetrical(symmetrical) {
    setText(QCoreApplication::translate("ZT::AnimCmd::ChangeTangentParamCommand",
                                        "Change keys interpolation type"));
}

void ChangeTangentParamCommand::redo() {
    forEachCurve(keysByCurve(), [&](EditableMotionCurve& curve, const KeysSet& keys) {
        curve.setKeysParam(keys, _type, _smooth, _symmetrical);
    });
}

ChangeSmoothnessCommand::ChangeSmoothnessCommand(const KeysSet& keys, bool smooth)
    : ChangeKeyParamCommand(keys)
    , _smooth(smooth) {
    setText(QCoreApplication::translate("ZT::AnimCmd::ChangeSmoothnessCommand", "Change keys smoothness"));
}

ChangeSmoothnessCommand::ChangeSmoothnessCommand(EditableMotionCurveKey* key, bool smooth)
    : ChangeKeyParamCommand(key)
    , _smooth(smooth) {
    setText(QCoreApplication::translate("ZT::AnimCmd::ChangeSmoothnessCommand", "Change key smoothness"));
}

void ChangeSmoothnessCommand::redo() {
    forEachCurve(keysByCurve(), [&](EditableMotionCurve& curve, const KeysSet& keys) {
        curve.setKeysSmooth(keys, _smooth);
    });
}

ChangeSymmetryCommand::ChangeSymmetryCommand(const KeysSet& keys, bool symmetrical)
    : ChangeKeyParamCommand(keys)
    , _symmetrical(symmetrical) {
    setText(
        QCoreApplication::translate("ZT::AnimCmd::ChangeSymmetryCommand", "Change keys symmetrical status"));
}

ChangeSymmetryCommand::ChangeSymmetryCommand(EditableMotionCurveKey* key, bool symmetrical)
    : ChangeKeyParamCommand(key)
    , _symmetrical(symmetrical) {
    setText(
        QCoreApplication::translate("ZT::AnimCmd::ChangeSymmetryCommand", "Change key symmetrical status"));
}

void ChangeSymmetryCommand::redo() {
    forEachCurve(keysByCurve(), [&](EditableMotionCurve& curve, const KeysSet& keys) {
        curve.setKeysSymmetrical(keys, _symmetrical);
    });
}

} // namespace ZT::AnimCmd
