#include "commands/MoveCurveKeysCommand.h"

#include "model/FrameConversion.h"

#include <QCoreApplication>

#include <algorithm>

namespace ZT::AnimCmd {

MoveCurveKeysCommand::MoveCurveKeysCommand(const KeyPosMap& positions, bool finalCommand)
    : _mergeState(finalCommand) {
    // Deliberate: one text for every drag that is not empty; see
    // everyDragThatIsNotEmptyIsLabelledMoveOneKey().
    const char* const context = "ZT::AnimCmd::MoveCurveKeysCommand";
    setText(positions.isEmpty() ? QCoreApplication::translate(context, "Move %1 keys").arg(positions.size())
                                : QCoreApplication::translate(context, "Move one key"));
    for (auto entry = positions.cbegin(); entry != positions.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        EditableMotionCurve* const curve = key != nullptr ? key->getParentCurve() : nullptr;
        if (curve == nullptr) {
            continue;
        }
        _newPositions[curve].insert(key, entry.value());
        _oldPositions[curve].insert(
            key, QPointF(static_cast<double>(index(key)), static_cast<double>(key->getValue())));
        _oldRecords[curve].emplace_back(key, key->baseMotionCurveKey());
        _movedKeys.insert(key);
    }
}

MoveCurveKeysCommand::~MoveCurveKeysCommand() = default;

void MoveCurveKeysCommand::redo() {
    for (auto entry = _newPositions.cbegin(); entry != _newPositions.cend(); ++entry) {
        entry.key()->moveKeys(entry.value());
    }
}

void MoveCurveKeysCommand::undo() {
    for (auto entry = _oldPositions.cbegin(); entry != _oldPositions.cend(); ++entry) {
        entry.key()->moveKeys(entry.value());
        _finishReturn(*entry.key(), entry.value());
        entry.key()->_restoreValues(_oldRecords.value(entry.key()));
    }
}

// Keys that went separate ways may stand in each other's way back: moving one key at a time then leaves some
// behind. Those go home together. A home that a key of nobody's concern took meanwhile is left to it: no key
// is pushed out.
void MoveCurveKeysCommand::_finishReturn(EditableMotionCurve& curve, const KeyPosMap& oldPositions) {
    EditableMotionCurve::KeysIndexMap astray;
    for (auto entry = oldPositions.cbegin(); entry != oldPositions.cend(); ++entry) {
        const unsigned int home = frameFromPosition(entry->x());
        if (entry.key()->getParentCurve() == &curve && index(entry.key()) != home) {
            astray.insert(entry.key(), home);
        }
    }
    const auto isHomeFree = [&](unsigned int home) {
        EditableMotionCurveKey* const occupant = curve.getKey(home);
        return occupant == nullptr || astray.contains(occupant);
    };
    if (!astray.isEmpty() && std::all_of(astray.cbegin(), astray.cend(), isHomeFree)) {
        curve.reorganizeKeys(astray);
    }
}

int MoveCurveKeysCommand::id() const {
    return 1;
}

bool MoveCurveKeysCommand::mergeWith(const QUndoCommand* other) {
    const bool isOpen = _mergeState.beginMerge();
    const auto* const next = dynamic_cast<const MoveCurveKeysCommand*>(other);
    if (!isOpen || next == nullptr || next->id() != id() || next->_movedKeys != _movedKeys) {
        return false;
    }
    _newPositions = next->_newPositions;
    _mergeState.accept(next->_mergeState);
    return true;
}

bool MoveCurveKeysCommand::isFinalCommand() const {
    return _mergeState.isFinal();
}

} // namespace ZT::AnimCmd
