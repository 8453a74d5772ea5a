#include "commands/MoveTangentCommand.h"

#include "commands/ForEachCurve.h"

#include <QCoreApplication>

namespace ZT::AnimCmd {

namespace {

// Smooth and symmetrical bind handles where both are free.
bool isBound(const EditableMotionCurveKey& key) {
    using VQ::Math::Interpolation::InterpolationType;
    return (key.isSmooth() || key.isSymmetrical()) &&
           key.getTangentType(TangentSide::left) == InterpolationType::bezier &&
           key.getTangentType(TangentSide::right) == InterpolationType::bezier;
}

// The other handle of a key whose handles are not bound to each other is none of the command's.
EditableMotionCurve::KeyRecords reachedFrom(TangentSide side, EditableMotionCurve::KeyRecords records) {
    for (auto& [key, record] : records) {
        if (!isBound(*key)) {
            const auto now = key->baseMotionCurveKey();
            (side == TangentSide::left ? record.rightTangentOffset : record.leftTangentOffset) =
                side == TangentSide::left ? now.rightTangentOffset : now.leftTangentOffset;
        }
    }
    return records;
}

} // namespace

MoveTangentCommand::MoveTangentCommand(const QSet<EditableMotionCurveKey*>& keys, TangentSide side,
                                       float first, float second, bool finalCommand)
    : _mergeState(finalCommand)
    , _side(side)
    , _tangentOffset(first, second) {
    setText(QCoreApplication::translate("ZT::AnimCmd::MoveTangentCommand",
                                        "Move the tangent of some curve keys"));
    for (EditableMotionCurveKey* const key : keys) {
        _capture(key);
    }
}

MoveTangentCommand::MoveTangentCommand(EditableMotionCurveKey* key, TangentSide side, float first,
                                       float second, bool finalCommand)
    : _mergeState(finalCommand)
    , _side(side)
    , _tangentOffset(first, second) {
    _capture(key);
    setText(
        QCoreApplication::translate("ZT::AnimCmd::MoveTangentCommand", "Move the tangent of one curve key"));
}

MoveTangentCommand::~MoveTangentCommand() = default;

void MoveTangentCommand::_capture(EditableMotionCurveKey* key) {
    EditableMotionCurve* const curve = key != nullptr ? key->getParentCurve() : nullptr;
    if (curve == nullptr) {
        return;
    }
    _keysByCurve[curve].insert(key);
    _oldOffsets[curve].insert(key, key->getTangentOffset(_side));
    _oldRecords[curve].emplace_back(key, key->baseMotionCurveKey());
}

void MoveTangentCommand::redo() {
    forEachCurve(_keysByCurve, [&](EditableMotionCurve& curve, const auto& keys) {
        FirstException thrown;
        thrown.guard([&] { curve.moveTangents(keys, _side, _tangentOffset); });
        thrown.guard([&] { curve._restoreHandles(_reached.value(&curve)); });
        thrown.rethrow();
    });
}

void MoveTangentCommand::undo() {
    // Each step of a drag turned and rounded the opposite handles anew: the last one alone would give others.
    _reached.clear();
    for (auto entry = _oldRecords.cbegin(); entry != _oldRecords.cend(); ++entry) {
        for (const auto& [key, record] : entry.value()) {
            // A key that a step on other keys left out is where redo leads it.
            if (_hasMerged && key->getTangentOffset(_side) == _tangentOffset) {
                _reached[entry.key()].emplace_back(key, key->baseMotionCurveKey());
            }
        }
    }
    forEachCurve(_oldOffsets, [&](EditableMotionCurve& curve, const auto& offsets) {
        FirstException thrown;
        thrown.guard([&] { curve.moveTangents(offsets, _side); });
        thrown.guard([&] { curve._restoreHandles(reachedFrom(_side, _oldRecords.value(&curve))); });
        thrown.rethrow();
    });
}

int MoveTangentCommand::id() const {
    return 2;
}

bool MoveTangentCommand::mergeWith(const QUndoCommand* other) {
    const bool isOpen = _mergeState.beginMerge();
    const auto* const next = dynamic_cast<const MoveTangentCommand*>(other);
    if (!isOpen || next == nullptr || next->id() != id() ||
        (next->_keysByCurve != _keysByCurve && next->_side != _side)) {
        return false;
    }
    _tangentOffset = next->_tangentOffset;
    _hasMerged = true;
    _reached.clear();
    _mergeState.accept(next->_mergeState);
    return true;
}

bool MoveTangentCommand::isFinalCommand() const {
    return _mergeState.isFinal();
}

} // namespace ZT::AnimCmd
