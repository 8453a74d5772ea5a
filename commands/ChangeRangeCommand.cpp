#include "commands/ChangeRangeCommand.h"

#include "model/AnimationMarkers.h"
#include "model/EditableMotionCurveExceptions.h"
#include "model/FirstException.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <functional>

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

ChangeRangeCommand::~ChangeRangeCommand() {
    FirstException dropped;
    for (const Missing& missing : _missing) {
        if (missing.key != nullptr && missing.curve != nullptr && missing.key->getParentCurve() == nullptr) {
            dropped.guard([&] { missing.curve->_putBack(missing.key, missing.frame); });
        }
    }
}

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
    _missing.clear();
    _apply(newIndices);
}

void ChangeRangeCommand::undo() {
    _missing.clear();
    FirstException thrown;
    thrown.guard([&] { _apply(_oldIndices); });
    thrown.guard([&] { _noteMissing(); });
    thrown.rethrow();
}

void ChangeRangeCommand::_noteMissing() {
    if (_failedKeys.empty()) {
        return;
    }
    const Keys ours = _detachedKeys.keys();
    for (auto curve = _oldIndices.cbegin(); curve != _oldIndices.cend(); ++curve) {
        for (auto entry = curve->cbegin(); entry != curve->cend(); ++entry) {
            if (std::binary_search(ours.begin(), ours.end(), entry.key(), std::less<>())) {
                _missing.push_back({entry.key(), curve.key(), entry.value()});
            }
        }
    }
}

void ChangeRangeCommand::_apply(const CurvesKeysMap& indices) {
    FirstException thrown;
    _detachedKeys.letGoOfTakenKeys({&_oldIndices, &newIndices});
    thrown.guard([&] { reorganizeKeys(indices); });
    thrown.guard([&] { updateRange(); });
    thrown.rethrow();
}

void ChangeRangeCommand::reorganizeKeys(const CurvesKeysMap& indices) {
    _failedKeys.clear();
    const Keys ours = _detachedKeys.keys();
    FirstException thrown;
    for (auto entry = indices.cbegin(); entry != indices.cend(); ++entry) {
        thrown.guard([&] {
            EditableMotionCurve& curve = *entry.key();
            Keys others; // Newcomers that somebody else owns. In the order of their addresses, as ours.
            for (auto key = entry->keyBegin(); key != entry->keyEnd(); ++key) {
                if (*key != nullptr && !curve._holds(*key) &&
                    !std::binary_search(ours.begin(), ours.end(), *key, std::less<>())) {
                    others.push_back(*key);
                }
            }
            try {
                curve.reorganizeKeys(entry.value());
            } catch (EditableMotionCurveReorganizedFail& failure) {
                _takeFailedKeys(curve, failure.failedKeys, others);
            }
        });
    }
    _detachedKeys.letGoOfTakenKeys();
    thrown.rethrow();
}

void ChangeRangeCommand::_takeFailedKeys(EditableMotionCurve& curve, Keys& failed, const Keys& others) {
    const std::size_t namedBefore = _failedKeys.size();
    FirstException thrown;
    thrown.guard([&] { _failedKeys.insert(_failedKeys.end(), failed.begin(), failed.end()); });
    const auto isAnothers = [&](EditableMotionCurveKey* key) {
        return std::binary_search(others.begin(), others.end(), key, std::less<>());
    };
    const auto firstOther =
        std::stable_partition(failed.begin(), failed.end(), [&](auto* key) { return !isAnothers(key); });
    // Keys of others may die before the next turn.
    thrown.guard([&] { _detachedKeys.watch({firstOther, failed.end()}); });
    failed.erase(firstOther, failed.end());
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
