#include "commands/ChangeRangeCommand.h"

#include "model/AnimationMarkers.h"
#include "model/EditableMotionCurveExceptions.h"
#include "model/FirstException.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>

namespace ZT::AnimCmd {

ChangeRangeCommand::ChangeRangeCommand(AnimationMarkers* markers, const KeysIndexMap& keys,
                                       unsigned int rangeStart, unsigned int rangeEnd, bool finalCommand)
    : pendingRange{rangeStart, rangeEnd}
    , _mergeState(finalCommand)
    , _markers(markers) {
    setRangeText(QCoreApplication::translate("ZT::AnimCmd::ChangeRangeCommand",
                                             "Range command from (%1; %2) to (%3; %4)"),
                 markersRange(), pendingRange);
    for (auto entry = keys.cbegin(); entry != keys.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        if (key != nullptr && key->getParentCurve() != nullptr) {
            _oldIndices[key->getParentCurve()].insert(key, index(key));
        }
    }
}

ChangeRangeCommand::~ChangeRangeCommand() = default;

ChangeRangeCommand::Range ChangeRangeCommand::markersRange() const {
    return {_markers->rangeStartIndex(), _markers->rangeEndIndex()};
}

void ChangeRangeCommand::forgetKeys() {
    _oldIndices.clear();
    newIndices.clear();
}

void ChangeRangeCommand::setRangeText(const QString& textTemplate, const Range& from, const Range& to) {
    _textTemplate = textTemplate;
    setText(_textTemplate.arg(from.start).arg(from.end).arg(to.start).arg(to.end));
}

void ChangeRangeCommand::redo() {
    _apply(newIndices);
}

void ChangeRangeCommand::undo() {
    _apply(_oldIndices);
}

void ChangeRangeCommand::_apply(const CurvesKeysMap& indices) {
    FirstException thrown;
    _forgetDeadKeys();
    thrown.guard([&] { reorganizeKeys(indices); });
    thrown.guard([&] { updateRange(); });
    thrown.rethrow();
}

// Somebody else may have put a failed key into a curve in which it died.
void ChangeRangeCommand::_forgetDeadKeys() {
    for (EditableMotionCurveKey* const dead : _detachedKeys.letGoOfTakenKeys()) {
        for (CurvesKeysMap* const indices : {&_oldIndices, &newIndices}) {
            for (auto& ofCurve : *indices) {
                ofCurve.remove(dead);
            }
        }
    }
}

void ChangeRangeCommand::reorganizeKeys(const CurvesKeysMap& indices) {
    _failedKeys.clear();
    FirstException thrown;
    for (auto entry = indices.cbegin(); entry != indices.cend(); ++entry) {
        thrown.guard([&] {
            EditableMotionCurve& curve = *entry.key();
            Keys newcomers;
            for (auto key = entry->keyBegin(); key != entry->keyEnd(); ++key) {
                if (*key != nullptr && (*key)->getParentCurve() != &curve) {
                    newcomers.push_back(*key);
                }
            }
            try {
                curve.reorganizeKeys(entry.value());
            } catch (EditableMotionCurveReorganizedFail& failure) {
                _takeFailedKeys(curve, failure.failedKeys, newcomers);
            }
        });
    }
    _detachedKeys.letGoOfHeldKeys();
    thrown.rethrow();
}

// Keys that failed as newcomers stay with whoever owns them, be it this command.
void ChangeRangeCommand::_takeFailedKeys(EditableMotionCurve& curve, Keys& failed, const Keys& newcomers) {
    const std::size_t namedBefore = _failedKeys.size();
    FirstException thrown;
    thrown.guard([&] { _failedKeys.insert(_failedKeys.end(), failed.begin(), failed.end()); });
    const auto isNewcomer = [&](EditableMotionCurveKey* key) {
        return std::find(newcomers.begin(), newcomers.end(), key) != newcomers.end();
    };
    failed.erase(std::remove_if(failed.begin(), failed.end(), isNewcomer), failed.end());
    if (!thrown.guard([&] { _detachedKeys.add(failed); })) {
        // Memory is out: keys that cannot be watched stay in their curve, behind its last one.
        _failedKeys.resize(namedBefore);
        for (EditableMotionCurveKey* const key : failed) {
            thrown.guard([&] { curve._putBack(key, curve.getGreaterIndex()); });
        }
    }
    thrown.rethrow();
}

void ChangeRangeCommand::updateRange() {
    const Range shown = markersRange();
    FirstException thrown;
    thrown.guard([&] { _markers->setRangeStartIndex(pendingRange.start); });
    thrown.guard([&] { _markers->setRangeEndIndex(pendingRange.end); });
    pendingRange = shown;
    thrown.rethrow();
}

int ChangeRangeCommand::id() const {
    return 3;
}

bool ChangeRangeCommand::mergeWith(const QUndoCommand* other) {
    const bool isOpen = _mergeState.beginMerge();
    const auto* const next = dynamic_cast<const ChangeRangeCommand*>(other);
    if (!isOpen || next == nullptr || next == this || next->id() != id()) {
        return false;
    }
    // The stack deletes an absorbed command, which must not take its failed keys along: they change their
    // owner here, and so the other command changes although the stack offers it as a constant.
    auto* const absorbed = const_cast<ChangeRangeCommand*>(next);
    // What may run out of memory comes first: keys change their owner all or not at all.
    _failedKeys.reserve(_failedKeys.size() + next->_failedKeys.size());
    _detachedKeys.makeRoomFor(next->_detachedKeys);
    for (auto curve = next->_oldIndices.cbegin(); curve != next->_oldIndices.cend(); ++curve) {
        QMap<EditableMotionCurveKey*, unsigned int>& own = _oldIndices[curve.key()];
        for (auto entry = curve->cbegin(); entry != curve->cend(); ++entry) {
            if (!own.contains(entry.key())) {
                own.insert(entry.key(), entry.value());
            }
        }
    }
    for (auto curve = next->newIndices.cbegin(); curve != next->newIndices.cend(); ++curve) {
        QMap<EditableMotionCurveKey*, unsigned int>& own = newIndices[curve.key()];
        for (auto entry = curve->cbegin(); entry != curve->cend(); ++entry) {
            own.insert(entry.key(), entry.value());
        }
    }
    setRangeText(_textTemplate, pendingRange, markersRange());
    _failedKeys.insert(_failedKeys.end(), next->_failedKeys.begin(), next->_failedKeys.end());
    absorbed->_failedKeys.clear();
    _detachedKeys.addAll(absorbed->_detachedKeys);
    _mergeState.accept(next->_mergeState);
    return true;
}

bool ChangeRangeCommand::isFinalCommand() const {
    return _mergeState.isFinal();
}

} // namespace ZT::AnimCmd
