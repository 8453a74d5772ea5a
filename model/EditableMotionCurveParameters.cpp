#include "model/CurveBatch.h"
#include "model/EditableMotionCurve.h"

#include <type_traits>

namespace ZT {

using VQ::Math::Interpolation::InterpolationType;

template <class Keys, class Action>
void EditableMotionCurve::_editEach(const Keys& keys, Action action) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): a slot may change the caller's
    const Keys shared = keys;
    Batch batch(*this);
    if (shared.isEmpty()) {
        // Deliberate: see aBulkEditOfNothingLeavesTheBatchDepthRaised().
        batch.leaveRaised();
        return;
    }
    for (auto entry = shared.cbegin(); entry != shared.cend(); ++entry) {
        EditableMotionCurveKey* key = nullptr;
        if constexpr (std::is_same_v<Keys, KeysSet>) {
            key = *entry;
        } else {
            key = entry.key();
        }
        if (_edits(key)) {
            batch.thrown.guard([&] { action(*key, *entry); });
        }
    }
    batch.end();
}

void EditableMotionCurve::moveTangents(const KeysSet& tangents, TangentSide side,
                                       QPair<float, float> offset) {
    _editEach(tangents, [&](EditableMotionCurveKey& key, auto) { key.setTangentOffset(side, offset); });
}

void EditableMotionCurve::moveTangents(const TangentPosMap& tangentsPos, TangentSide side) {
    _editEach(tangentsPos, [&](EditableMotionCurveKey& key, const QPair<float, float>& offset) {
        key.setTangentOffset(side, offset);
    });
}

void EditableMotionCurve::setTangentsType(const KeySideMap& tangentsSide, InterpolationType type) {
    _editEach(tangentsSide,
              [&](EditableMotionCurveKey& key, TangentSide side) { key.setTangentType(side, type); });
}

void EditableMotionCurve::setTangentsType(const TangentTypeMap& tangentsType) {
    _editEach(tangentsType,
              [](EditableMotionCurveKey& key, const QPair<TangentSide, InterpolationType>& type) {
                  key.setTangentType(type.first, type.second);
              });
}

void EditableMotionCurve::setKeysSmooth(const KeysSet& keys, bool smooth) {
    _editEach(keys, [&](EditableMotionCurveKey& key, auto) { key.setSmooth(smooth); });
}

void EditableMotionCurve::setKeysSmooth(const KeyStateMap& keysSmooth) {
    _editEach(keysSmooth, [](EditableMotionCurveKey& key, bool smooth) { key.setSmooth(smooth); });
}

void EditableMotionCurve::setKeysSymmetrical(const KeysSet& keys, bool symmetrical) {
    _editEach(keys, [&](EditableMotionCurveKey& key, auto) { key.setSymmetrical(symmetrical); });
}

void EditableMotionCurve::setKeysSymmetrical(const KeyStateMap& keysSymmetrical) {
    _editEach(keysSymmetrical,
              [](EditableMotionCurveKey& key, bool symmetrical) { key.setSymmetrical(symmetrical); });
}

void EditableMotionCurve::setKeysParam(const KeysSet& keys, InterpolationType type, bool smooth,
                                       bool symmetrical) {
    _editEach(keys, [&](EditableMotionCurveKey& key, auto) {
        FirstException thrown;
        thrown.guard([&] { key.setTangentType(TangentSide::left, type); });
        thrown.guard([&] { key.setTangentType(TangentSide::right, type); });
        thrown.guard([&] { key.setSmooth(smooth); });
        thrown.guard([&] { key.setSymmetrical(symmetrical); });
        thrown.rethrow();
    });
}

void EditableMotionCurve::restoreKeys(const TangentTypeMap& tangentsType,
                                      const TangentPosMap& leftTangentsOffset,
                                      const TangentPosMap& rightTangentsOffset, const KeyStateMap& keysSmooth,
                                      const KeyStateMap& keysSymmetrical) {
    Batch batch(*this);
    batch.thrown.guard([&] { setKeysSmooth(keysSmooth); });
    batch.thrown.guard([&] { setKeysSymmetrical(keysSymmetrical); });
    batch.thrown.guard([&] { setTangentsType(tangentsType); });
    batch.thrown.guard([&] { moveTangents(leftTangentsOffset, TangentSide::left); });
    batch.thrown.guard([&] { moveTangents(rightTangentsOffset, TangentSide::right); });
    batch.end();
}

template <class Saved, class Restore>
void EditableMotionCurve::_restoreEach(const Saved& saved, Restore restore) {
    bool isRestored = false;
    Batch batch(*this);
    for (const auto& [key, state] : saved) {
        if (_edits(key)) {
            const auto restoreKey = [&, key = key, &state = state] {
                isRestored = restore(*key, state) || isRestored;
            };
            // A slot hears, and throws, only where something was restored.
            isRestored = !batch.thrown.guard(restoreKey) || isRestored;
        }
    }
    if (isRestored) {
        batch.end();
    }
}

void EditableMotionCurve::_restoreHandles(const KeyRecords& records) {
    _restoreEach(records,
                 [](EditableMotionCurveKey& key, const auto& record) { return key._restoreHandles(record); });
}

void EditableMotionCurve::_restoreValues(const KeyValues& values) {
    _restoreEach(values, [](EditableMotionCurveKey& key, float value) { return key._restoreValue(value); });
}

void EditableMotionCurve::setTimeUnit(const RationalSeconds& /*pTimeUnit*/) {}
void EditableMotionCurve::setFps(int /*pFps*/) {}
void EditableMotionCurve::setValueLimits(const QPair<float, float>& /*pLimits*/) {}
void EditableMotionCurve::setMinValue(float /*pMin*/) {}
void EditableMotionCurve::setMaxValue(float /*pMax*/) {}
void EditableMotionCurve::setMaxAbsoluteDerivative(float /*pMaxAbsoluteDerivative*/) {}

} // namespace ZT
