#include "commands/ReplaceCurveKeysCommand.h"

#include "model/FirstException.h"

#include <QCoreApplication>
#include <QSet>

#include <utility>

namespace ZT::AnimCmd {

namespace {

template <class Value>
QSet<EditableMotionCurve*> curvesOf(const QMap<EditableMotionCurve*, Value>& byCurve) {
    return {byCurve.keyBegin(), byCurve.keyEnd()};
}

} // namespace

ReplaceCurveKeysCommand::ReplaceCurveKeysCommand(CurvesKeysMap keysToRemove, CurvesKeysMap keysToInsert)
    : _keysToRemove(std::move(keysToRemove))
    , _keysToInsert(std::move(keysToInsert)) {
    _setReplaceText();
    _own(_keysToInsert); // Last: of a command that cannot be built the caller keeps the keys.
}

ReplaceCurveKeysCommand::ReplaceCurveKeysCommand(const QString& text, CurvesKeysMap keysToInsert)
    : QUndoCommand(text.arg(keysToInsert.size()))
    , _keysToInsert(std::move(keysToInsert)) {
    _own(_keysToInsert);
}

ReplaceCurveKeysCommand::ReplaceCurveKeysCommand(QList<EditableMotionCurveKey*> keys,
                                                 CurvesKeysMap keysToInsert)
    : _keysToInsert(std::move(keysToInsert)) {
    for (EditableMotionCurveKey* const key : std::as_const(keys)) {
        addKeyToRemove(key);
    }
    _setReplaceText();
    _own(_keysToInsert);
}

ReplaceCurveKeysCommand::~ReplaceCurveKeysCommand() = default;

void ReplaceCurveKeysCommand::_setReplaceText() {
    // Deliberate: the second count is the width of the first number and "%2" stays; see
    // theReplaceTextUsesTheSecondCountAsFieldWidth(). All texts count curves, not keys.
    const QString text = QCoreApplication::translate("ZT::AnimCmd::ReplaceCurveKeysCommand",
                                                     "Replace %1 curve keys by %2 other curve keys");
    setText(text.arg(qlonglong{removedCurves()}, insertedCurves()));
}

void ReplaceCurveKeysCommand::_own(const CurvesKeysMap& keys) {
    std::vector<EditableMotionCurveKey*> all;
    for (const KeysIndexMap& keysOfCurve : keys) {
        all.insert(all.end(), keysOfCurve.keyBegin(), keysOfCurve.keyEnd());
    }
    _detachedKeys.add(all);
}

void ReplaceCurveKeysCommand::addKeyToRemove(EditableMotionCurveKey* key) {
    EditableMotionCurve* const curve = key != nullptr ? key->getParentCurve() : nullptr;
    if (curve != nullptr) {
        _keysToRemove[curve].insert(key, index(key));
    }
}

void ReplaceCurveKeysCommand::addKeyToInsert(EditableMotionCurveKey* key, EditableMotionCurve* curve,
                                             unsigned int index) {
    if (key != nullptr && curve != nullptr) {
        _keysToInsert[curve].insert(key, index);
        _detachedKeys.add({key});
    }
}

void ReplaceCurveKeysCommand::redo() {
    const bool isTriedAgain = std::exchange(_wasStopped, true);
    _forgetDeadKeys();
    _settle();
    CurvesKeysMap standing = _standingAmong(_keysToInsert);
    const CurvesSet curves = isTriedAgain ? _curves() - _doneIn : _curves();
    CurvesSet done = _doneIn + curves;
    FirstException thrown;
    CurvesKeysMap gone = _replace(curves, _keysToRemove, _keysToInsert, thrown);
    for (EditableMotionCurve* const curve : curves) {
        if (!gone.contains(curve)) {
            done.remove(curve);
        }
    }
    _conclude({true, std::move(standing), std::move(gone)}, std::move(done), thrown);
}

void ReplaceCurveKeysCommand::undo() {
    const bool isTriedAgain = std::exchange(_wasStopped, true);
    _forgetDeadKeys();
    _settle();
    const CurvesSet curves = isTriedAgain ? _doneIn : _curves();
    CurvesSet done = _doneIn;
    done.detach();
    FirstException thrown;
    CurvesKeysMap gone = _replace(curves, _keysToInsert, _keysToRemove, thrown);
    for (auto curve = gone.cbegin(); curve != gone.cend(); ++curve) {
        done.remove(curve.key());
    }
    _conclude({false, {}, std::move(gone)}, std::move(done), thrown);
}

// Somebody else may have put a key of the command into a curve in which it died.
void ReplaceCurveKeysCommand::_forgetDeadKeys() {
    if (_outcome) {
        _detachedKeys.letGoOfTakenKeys(
            {&_keysToRemove, &_keysToInsert, &_outcome->standing, &_outcome->gone});
    } else {
        _detachedKeys.letGoOfTakenKeys({&_keysToRemove, &_keysToInsert});
    }
}

ReplaceCurveKeysCommand::CurvesSet ReplaceCurveKeysCommand::_curves() const {
    return curvesOf(_keysToRemove) + curvesOf(_keysToInsert);
}

// Keys have left by now: what they are to the opposite is kept without asking for memory, and worked out when
// there is some, at the latest by the next undo or redo.
void ReplaceCurveKeysCommand::_conclude(Outcome outcome, CurvesSet done, FirstException& thrown) {
    _outcome = std::move(outcome);
    _doneIn = std::move(done);
    thrown.guard([&] { _settle(); });
    _wasStopped = static_cast<bool>(thrown);
    if (_wasStopped) {
        _detachedKeys.letGoOfHeldKeys();
    } else {
        _detachedKeys.letGoOfTakenKeys();
    }
    thrown.rethrow();
}

void ReplaceCurveKeysCommand::_settle() {
    if (!_outcome) {
        return;
    }
    CurvesKeysMap gone = _outcome->gone;
    if (_outcome->isRedo) {
        CurvesKeysMap inserted = _keysToInsert;
        _leaveOutStanding(_outcome->standing, gone, inserted);
        _keepWhereNothingWasDone(_keysToRemove, gone);
        _leaveOutNewcomers(_outcome->standing, inserted, gone);
        _keysToInsert = std::move(inserted);
        _keysToRemove = std::move(gone);
    } else {
        _keepWhereNothingWasDone(_keysToInsert, gone);
        _keysToInsert = std::move(gone);
    }
    _outcome.reset();
}

ReplaceCurveKeysCommand::CurvesKeysMap ReplaceCurveKeysCommand::_replace(const CurvesSet& curves,
                                                                         const CurvesKeysMap& toRelease,
                                                                         const CurvesKeysMap& toInsert,
                                                                         FirstException& thrown) {
    CurvesKeysMap gone;
    for (EditableMotionCurve* const curve : curves) {
        thrown.guard([&] {
            KeysIndexMap& ofCurve = gone[curve]; // Its place is made before anything leaves.
            const bool isDone = thrown.guard([&] {
                ofCurve = curve->releaseAndInsertKeys(toRelease.value(curve), toInsert.value(curve));
            });
            if (!isDone) {
                gone.remove(curve);
            }
        });
    }
    if (!thrown.guard([&] { _own(gone); })) {
        // Keys without an owner must not stay outside.
        for (auto curve = gone.cbegin(); curve != gone.cend(); ++curve) {
            thrown.guard(
                [&] { curve.key()->releaseAndInsertKeys(toInsert.value(curve.key()), curve.value()); });
        }
        gone.clear();
    }
    return gone;
}

ReplaceCurveKeysCommand::CurvesKeysMap
ReplaceCurveKeysCommand::_standingAmong(const CurvesKeysMap& inserted) {
    CurvesKeysMap standing;
    for (auto curve = inserted.cbegin(); curve != inserted.cend(); ++curve) {
        for (auto entry = curve->cbegin(); entry != curve->cend(); ++entry) {
            if (entry.key() != nullptr && entry.key()->getParentCurve() == curve.key()) {
                standing[curve.key()].insert(entry.key(), index(entry.key()));
            }
        }
    }
    return standing;
}

// Where two keys to insert share a frame, the second displaces the first, and the curve reports the first
// among the keys that left. Undo must put back only what stood in the curve before, at the frame where it
// stood.
void ReplaceCurveKeysCommand::_leaveOutNewcomers(const CurvesKeysMap& standing, const CurvesKeysMap& inserted,
                                                 CurvesKeysMap& gone) {
    for (auto curve = inserted.cbegin(); curve != inserted.cend(); ++curve) {
        for (auto entry = curve->cbegin(); entry != curve->cend(); ++entry) {
            EditableMotionCurveKey* const key = entry.key();
            if (key == nullptr || key->getParentCurve() != nullptr) {
                continue;
            }
            const KeysIndexMap stood = standing.value(curve.key());
            const auto frame = stood.constFind(key);
            if (frame == stood.cend()) {
                gone[curve.key()].remove(key);
            } else {
                gone[curve.key()].insert(key, *frame);
            }
        }
    }
}

// A curve whose turn ended with an exception is as it was: the command can be done, or undone, there once
// more.
void ReplaceCurveKeysCommand::_keepWhereNothingWasDone(const CurvesKeysMap& asked, CurvesKeysMap& gone) {
    for (auto curve = asked.cbegin(); curve != asked.cend(); ++curve) {
        if (!gone.contains(curve.key())) {
            gone.insert(curve.key(), curve.value());
        }
    }
}

// What stood in its curve and never left it was not taken in: undo must not take it out.
void ReplaceCurveKeysCommand::_leaveOutStanding(const CurvesKeysMap& standing, const CurvesKeysMap& gone,
                                                CurvesKeysMap& inserted) {
    for (auto curve = standing.cbegin(); curve != standing.cend(); ++curve) {
        for (auto entry = curve->cbegin(); entry != curve->cend(); ++entry) {
            if (gone.contains(curve.key()) && !gone.value(curve.key()).contains(entry.key())) {
                inserted[curve.key()].remove(entry.key());
            }
        }
    }
}

AddCurveKeysCommand::AddCurveKeysCommand(CurvesKeysMap keys)
    : ReplaceCurveKeysCommand(
          QCoreApplication::translate("ZT::AnimCmd::AddCurveKeysCommand", "Add %1 curve keys"),
          std::move(keys)) {}

// Deliberate: the single-key forms keep the text of an empty replacement; see
// theSingleKeyCommandsKeepTheTextOfAnEmptyReplacement().
AddCurveKeysCommand::AddCurveKeysCommand(EditableMotionCurveKey* key, EditableMotionCurve* curve,
                                         unsigned int index)
    : ReplaceCurveKeysCommand(CurvesKeysMap(), CurvesKeysMap()) {
    addKeyToInsert(key, curve, index);
}

RemoveCurveKeysCommand::RemoveCurveKeysCommand(QList<EditableMotionCurveKey*> keys)
    : ReplaceCurveKeysCommand(std::move(keys), CurvesKeysMap()) {
    setText(QCoreApplication::translate("ZT::AnimCmd::RemoveCurveKeysCommand", "Remove %1 curve keys")
                .arg(removedCurves()));
}

RemoveCurveKeysCommand::RemoveCurveKeysCommand(EditableMotionCurveKey* key)
    : ReplaceCurveKeysCommand(CurvesKeysMap(), CurvesKeysMap()) {
    addKeyToRemove(key);
}

} // namespace ZT::AnimCmd
