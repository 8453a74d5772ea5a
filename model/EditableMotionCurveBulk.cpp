#include "model/EditableMotionCurve.h"

#include "base/math/Narrowing.h"
#include "model/EditableMotionCurveExceptions.h"
#include "model/FrameConversion.h"
#include "model/FrameOrder.h"
#include "model/Prefetch.h"

namespace ZT {

using VQ::Math::Interpolation::InterpolationType;

/// While it lives, the curve is inside a batch. Leaving it by an exception lowers the depth as well.
class [[nodiscard]] EditableMotionCurve::Batch {
public:
    explicit Batch(EditableMotionCurve& curve)
        : _curve(&curve) {
        ++curve._batchDepth;
    }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch() {
        if (_curve != nullptr) {
            --_curve->_batchDepth;
        }
    }

    /// Leaves the depth raised for good.
    void leaveRaised() noexcept { _curve = nullptr; }

    /// Ends the batch; the outermost one announces the change.
    void end() {
        EditableMotionCurve* const curve = std::exchange(_curve, nullptr);
        --curve->_batchDepth;
        curve->onKeysChanged();
    }

private:
    EditableMotionCurve* _curve;
};

/// A batch that moves keys in time: its end recomputes automatic handles and checks the greatest frame.
class [[nodiscard]] EditableMotionCurve::BatchWithFrames {
public:
    explicit BatchWithFrames(EditableMotionCurve& curve)
        : _curve(curve)
        , _previousGreater(curve.getGreaterIndex())
        , _batch(curve) {}

    void leaveRaised() noexcept { _batch.leaveRaised(); }

    void end() {
        _curve.updateBezierAutoTangents();
        _batch.end();
        _curve._checkGreaterIndexChanged(_previousGreater);
    }

private:
    EditableMotionCurve& _curve;
    unsigned int _previousGreater;
    Batch _batch;
};

/// A key on its way to a new frame: with its node if it was detached from this curve, without if it is a
/// newcomer.
struct EditableMotionCurve::Placement {
    EditableMotionCurveKey* key;
    Index target;
    DetachedKey detached;
    bool isNewcomer;
};

void EditableMotionCurve::moveKeys(const KeyPosMap& keysPos) {
    KeyMoves moves;
    moves.reserve(static_cast<std::size_t>(keysPos.size()));
    for (auto entry = keysPos.cbegin(); entry != keysPos.cend(); ++entry) {
        moves.emplace_back(entry.key(), entry.value());
    }
    _moveKeys(moves);
}

// Where keys no longer fit into the processor's caches, a move spends most of its time waiting for memory.
// Keys are fetched some moves ahead, and their map nodes, which only the keys know, a little later.
void EditableMotionCurve::_fetchAhead(const KeyMoves& moves, const FrameOrder& order, std::size_t i) const {
    constexpr std::size_t keyDistance = 16;
    constexpr std::size_t nodeDistance = 8;
    if (i + keyDistance < order.size()) {
        prefetch(moves[order[i + keyDistance]].first);
    }
    if (i + nodeDistance < order.size()) {
        const EditableMotionCurveKey* const key = moves[order[i + nodeDistance]].first;
        if (_edits(key) && isHere(key->_placement())) {
            prefetchNode(key->_placement().position);
        }
    }
}

void EditableMotionCurve::_moveKeys(const KeyMoves& moves) {
    BatchWithFrames batch(*this);
    if (moves.empty()) {
        // Deliberate: see movingNothingLeavesTheBatchDepthRaised().
        batch.leaveRaised();
        return;
    }
    FrameOrder order(moves, [](const auto& move) { return index(move.first); });
    const auto& [first, firstTarget] = moves[*order.begin()];
    if (index(first) < frameFromPosition(firstTarget.x())) {
        order.reverse();
    }
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (order.size() >= worthPrefetching) {
            _fetchAhead(moves, order, i);
        }
        const auto& [key, target] = moves[order[i]];
        if (_edits(key)) {
            key->setValue(VQ::Math::toFloat(target.y()));
            _translate(key, frameFromPosition(target.x()));
        }
    }
    batch.end();
}

void EditableMotionCurve::reorganizeKeys(const KeysIndexMap& keysPos) {
    BatchWithFrames batch(*this);
    std::vector<Placement> placements;
    placements.reserve(static_cast<std::size_t>(keysPos.size()));
    for (auto entry = keysPos.cbegin(); entry != keysPos.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        if (key != nullptr && (key->getParentCurve() == nullptr || _edits(key))) {
            placements.push_back({key, entry.value(), DetachedKey(), !_holds(key)});
        }
    }
    // Neighbours leave one after the other: taking nodes out of a tree here and there is slow.
    const FrameOrder order(placements, [](const Placement& each) { return index(each.key); });
    for (const std::size_t position : order) {
        Placement& placement = placements[position];
        if (!placement.isNewcomer) {
            placement.detached = detach(findKey(*placement.key->_record()));
        }
    }

    std::vector<EditableMotionCurveKey*> failedKeys;
    for (auto& [key, target, detached, isNewcomer] : placements) {
        if (isNewcomer && findBeside(target) == MotionCurve::end()) {
            MotionCurve::insert(target, key->_record());
            key->_announceIndex(target);
            _adopt(key);
            Q_EMIT keyAdded(key);
        } else if (!isNewcomer && attach(detached, target)) {
            key->_announceIndex(target);
        } else {
            failedKeys.push_back(key);
            if (!isNewcomer) {
                detached.release();
                _disconnectKey(key);
                Q_EMIT keyAboutToBeRemoved(key);
            }
        }
    }
    batch.end();
    if (!failedKeys.empty()) {
        throw EditableMotionCurveReorganizedFail(failedKeys);
    }
}

// Which of a map's keys stand at their frames. Empty where the map's order is that of frames: otherwise one
// walk over the curve takes the place of a search for each key. Keys are compared but not read: one that has
// left may be dead.
std::vector<bool> EditableMotionCurve::_standing(const KeysIndexMap& frames) {
    const std::vector<std::pair<EditableMotionCurveKey*, Index>> entries(frames.constKeyValueBegin(),
                                                                         frames.constKeyValueEnd());
    std::vector<bool> standing;
    const FrameOrder order(entries, [](const auto& entry) { return entry.second; });
    if (!order.isAsGiven()) {
        standing.resize(entries.size());
        for (const std::size_t entry : order) {
            const auto [key, frame] = entries[entry];
            const auto place = findBeside(frame);
            standing[entry] = place != MotionCurve::end() && _toEditableIterator(place)->second == key;
        }
    }
    return standing;
}

EditableMotionCurve::KeysIndexMap EditableMotionCurve::releaseAndInsertKeys(const KeysIndexMap& toRelease,
                                                                            const KeysIndexMap& toInsert) {
    BatchWithFrames batch(*this);
    // As a rule every key to release leaves: the answer then shares the caller's map.
    KeysIndexMap left = toRelease;
    auto standing = _standing(toRelease);
    std::size_t count = 0;
    PrefetchAhead ahead(static_cast<std::size_t>(toRelease.size()), toRelease.cbegin(), toRelease.cend(),
                        [](auto entry) { return entry.key(); });
    for (auto entry = toRelease.cbegin(); entry != toRelease.cend(); ++entry, ++count) {
        ahead.step();
        auto place = MotionCurve::end();
        if (standing.empty()) {
            place = findBeside(entry.value());
        } else if (standing[count]) {
            place = findKey(*entry.key()->_record());
        }
        const auto position = _toEditableIterator(place);
        const bool isThere = position != end() && position->second == entry.key();
        const std::size_t before = revision();
        const bool isReleased = isThere && _release(position) != nullptr;
        if (!isReleased) {
            left.remove(entry.key());
        }
        if (revision() != before + (isReleased ? 1U : 0U)) {
            standing.clear(); // A slot changed what stands where.
        }
    }
    for (auto entry = toInsert.cbegin(); entry != toInsert.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        const bool hasCurve = key != nullptr && key->getParentCurve() != nullptr;
        if (key == nullptr || (hasCurve && (!_edits(key) || _holds(key)))) {
            continue; // A key has one owner: what stands in a curve is not taken in a second time.
        }
        EditableMotionCurveKey* const displaced = release(entry.value());
        MotionCurve::insert(entry.value(), key->_record());
        _adopt(key);
        Q_EMIT keyAdded(key);
        if (displaced != nullptr) {
            left.insert(displaced, entry.value());
        }
    }
    batch.end();
    return left;
}

template <class Keys, class Action>
void EditableMotionCurve::_editEach(const Keys& keys, Action action) {
    Batch batch(*this);
    if (keys.isEmpty()) {
        // Deliberate: see aBulkEditOfNothingLeavesTheBatchDepthRaised().
        batch.leaveRaised();
        return;
    }
    for (auto entry = keys.cbegin(); entry != keys.cend(); ++entry) {
        EditableMotionCurveKey* key = nullptr;
        if constexpr (std::is_same_v<Keys, KeysSet>) {
            key = *entry;
        } else {
            key = entry.key();
        }
        if (_edits(key)) {
            action(*key, *entry);
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
        key.setTangentType(TangentSide::left, type);
        key.setTangentType(TangentSide::right, type);
        key.setSmooth(smooth);
        key.setSymmetrical(symmetrical);
    });
}

void EditableMotionCurve::restoreKeys(const TangentTypeMap& tangentsType,
                                      const TangentPosMap& leftTangentsOffset,
                                      const TangentPosMap& rightTangentsOffset, const KeyStateMap& keysSmooth,
                                      const KeyStateMap& keysSymmetrical) {
    Batch batch(*this);
    setKeysSmooth(keysSmooth);
    setKeysSymmetrical(keysSymmetrical);
    setTangentsType(tangentsType);
    moveTangents(leftTangentsOffset, TangentSide::left);
    moveTangents(rightTangentsOffset, TangentSide::right);
    batch.end();
}

template <class Saved, class Restore>
void EditableMotionCurve::_restoreEach(const Saved& saved, Restore restore) {
    bool isRestored = false;
    Batch batch(*this);
    for (const auto& [key, state] : saved) {
        isRestored = (_edits(key) && restore(*key, state)) || isRestored;
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
