#include "base/math/Narrowing.h"
#include "model/CurveBatch.h"
#include "model/EditableMotionCurve.h"
#include "model/EditableMotionCurveExceptions.h"
#include "model/FrameConversion.h"
#include "model/FrameOrder.h"
#include "model/Prefetch.h"

#include <algorithm>
#include <utility>

namespace ZT {

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

// Where keys no longer fit into the processor's caches, a walk over them spends most of its time waiting for
// memory. Items, which stand in the order of addresses, are fetched some turns ahead, the keys that they name
// a little later, and then the map nodes, which only the keys know.
template <class Items, class KeyOf>
void EditableMotionCurve::_fetchAhead(const Items& items, const FrameOrder& order, std::size_t i,
                                      KeyOf keyOf) const {
    constexpr std::size_t itemDistance = 24;
    constexpr std::size_t keyDistance = 16;
    constexpr std::size_t nodeDistance = 8;
    if (order.size() < worthPrefetching) {
        return;
    }
    if (i + itemDistance < order.size()) {
        prefetch(&items[order[i + itemDistance]]);
    }
    if (i + keyDistance < order.size()) {
        prefetch(keyOf(items[order[i + keyDistance]]));
    }
    if (i + nodeDistance < order.size()) {
        const EditableMotionCurveKey* const key = keyOf(items[order[i + nodeDistance]]);
        if (_edits(key) && isHere(key->_placement())) {
            prefetchNode(key->_placement().position);
        }
    }
}

void EditableMotionCurve::_note(const EditableMotionCurveKey& key, KeyTrail& trail) const noexcept {
    if (isHere(key._placement())) {
        trail.note(&key, key._placement().position);
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
    const bool isBackwards = index(first) < frameFromPosition(firstTarget.x());
    if (isBackwards) {
        order.reverse();
    }
    batch.trail.expect(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        _fetchAhead(moves, order, i, [](const auto& move) { return move.first; });
        EditableMotionCurveKey* const key = moves[order[i]].first;
        const QPointF target = moves[order[i]].second;
        if (_edits(key)) {
            _note(*key, batch.trail);
            batch.thrown.guard([&] { key->setValue(VQ::Math::toFloat(target.y())); });
            batch.thrown.guard([&] { _translate(key, frameFromPosition(target.x())); });
        }
    }
    batch.trail.turn(isBackwards);
    batch.end();
}

void EditableMotionCurve::reorganizeKeys(const KeysIndexMap& keysPos) {
    BatchWithFrames batch(*this);
    std::vector<Placement> placements;
    placements.reserve(static_cast<std::size_t>(keysPos.size()));
    for (auto entry = keysPos.cbegin(); entry != keysPos.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        if (key != nullptr && (_edits(key) || !_isHeld(*key))) {
            placements.push_back({key, entry.value(), DetachedKey(), !_holds(key)});
        }
    }
    // All that needs memory comes before the first key leaves.
    EditableMotionCurveReorganizedFail failure({});
    failure.failedKeys.reserve(placements.size());
    // Neighbours leave one after the other: taking nodes out of a tree here and there is slow.
    const FrameOrder order(placements, [](const Placement& each) { return index(each.key); });
    batch.trail.expect(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        _fetchAhead(placements, order, i, [](const Placement& each) { return each.key; });
        Placement& placement = placements[order[i]];
        if (_holds(placement.key)) { // Neither a newcomer nor a key that the map names twice.
            _note(*placement.key, batch.trail);
            placement.detached = detach(_find(placement.key).base());
        }
    }

    for (Placement& placement : placements) {
        // A key that a slot took or put somewhere before its turn is left to it.
        const bool isOurs = placement.isNewcomer || _edits(placement.key);
        if (isOurs && !_isHeld(*placement.key) && !_place(placement, batch)) {
            failure.failedKeys.push_back(placement.key);
        }
    }
    FirstException thrown;
    thrown.guard([&] { batch.end(); });
    const auto isHeld = [](const EditableMotionCurveKey* key) { return _isHeld(*key); };
    auto& failedKeys = failure.failedKeys;
    failedKeys.erase(std::remove_if(failedKeys.begin(), failedKeys.end(), isHeld), failedKeys.end());
    if (!failedKeys.empty()) {
        throw std::move(failure); // Who owns them comes first.
    }
    thrown.rethrow();
}

// Whether a curve holds the key, be it this one or another. The curve that the key names is not asked: one
// that merely made it may be gone.
bool EditableMotionCurve::_isHeld(const EditableMotionCurveKey& key) {
    return key._placement().mapNumber != 0;
}

bool EditableMotionCurve::_place(Placement& placement, Batch& batch) {
    EditableMotionCurveKey* const key = placement.key;
    const Index target = placement.target;
    if (!placement.isNewcomer) {
        if (attach(placement.detached, target)) {
            batch.thrown.guard([&] { key->_announceIndex(target); });
            return true;
        }
        _disconnectKey(key);
        batch.thrown.guard([&] { Q_EMIT keyAboutToBeRemoved(key); });
        return false;
    }
    if (findBeside(target) != MotionCurve::end() ||
        !batch.thrown.guard([&] { MotionCurve::insert(target, key->_record()); })) {
        return false;
    }
    batch.thrown.guard([&] { Q_EMIT key->indexChanged(target); }); // The curve that it names may be gone.
    if (!_holds(key)) {
        return true; // A slot took it out again.
    }
    const bool isConnected = _edits(key) || batch.thrown.guard([&] { _connectKey(key); });
    if (!isConnected) {
        detach(findKey(*key->_record())).release();
        _disconnectKey(key);
        return false;
    }
    batch.thrown.guard([&] { Q_EMIT keyAdded(key); });
    return true;
}

/// What releaseAndInsertKeys() was asked for and what it has done of it. Holds what the caller's maps said,
/// since a slot may change them.
struct EditableMotionCurve::Exchange {
    /// A key that came or one that it displaced.
    struct Step {
        EditableMotionCurveKey* key;
        Index frame;
        bool hasEntered;
    };

    Exchange(KeysIndexMap keysToRelease, KeysIndexMap keysToInsert, Index greatest)
        : toRelease(std::move(keysToRelease))
        , toInsert(std::move(keysToInsert))
        , left(toRelease)
        , turn(toRelease.cbegin())
        , announcedGreatest(greatest) {
        steps.reserve(2 * static_cast<std::size_t>(toInsert.size())); // Noting one must not fail.
    }

    // With the frame, since a map may name a key twice.
    bool hasLeft(EditableMotionCurveKey* key, Index frame) const {
        const auto [first, last] = left.equal_range(key);
        return std::find(first, last, frame) != last;
    }
    void leaveOut(EditableMotionCurveKey* key, Index frame) {
        const auto [first, last] = left.equal_range(key);
        if (const auto entry = std::find(first, last, frame); entry != last) {
            left.erase(entry);
        }
    }

    const KeysIndexMap toRelease;
    const KeysIndexMap toInsert;
    KeysIndexMap left;                 ///< what left of toRelease, and all of it that has not had its turn
    KeysIndexMap::const_iterator turn; ///< what has its turn to be released
    std::vector<Step> steps;
    Index announcedGreatest; ///< what listeners take for the greatest frame
};

EditableMotionCurve::KeysIndexMap EditableMotionCurve::releaseAndInsertKeys(const KeysIndexMap& toRelease,
                                                                            const KeysIndexMap& toInsert) {
    Exchange exchange(toRelease, toInsert, getGreaterIndex());
    try {
        BatchWithFrames batch(*this, exchange.announcedGreatest);
        _releaseKeys(exchange);
        _insertKeys(exchange);
        // What is noted as left stays as it is, since the way back may still be needed.
        KeysIndexMap answer = exchange.left;
        for (const auto& [key, frame, hasEntered] : exchange.steps) {
            if (!hasEntered) {
                answer.insert(key, frame);
            }
        }
        exchange.announcedGreatest = getGreaterIndex();
        batch.end();
        return answer;
    } catch (...) {
        _takeBack(exchange); // The caller gets no answer, so that nothing may have left.
        throw;
    }
}

// Keys in the order of frames are released as the map has them, without a list of their own: freeing one has
// the allocator join all the small blocks that disconnecting gave back, which takes as long as a third of the
// release.
void EditableMotionCurve::_releaseKeys(Exchange& exchange) {
    const KeysIndexMap& toRelease = exchange.toRelease;
    if (!std::is_sorted(toRelease.cbegin(), toRelease.cend())) {
        _releaseScatteredKeys(exchange);
        return;
    }
    PrefetchAhead ahead(static_cast<std::size_t>(toRelease.size()), toRelease.cbegin(), toRelease.cend(),
                        [](auto entry) { return entry.key(); });
    for (auto entry = toRelease.cbegin(); entry != toRelease.cend(); ++entry) {
        ahead.step();
        _releaseKey(exchange, entry.key(), entry.value(), findBeside(entry.value()));
    }
}

// One walk over the curve takes the place of a search for each key, and a list that of a map whose nodes lie
// anywhere. A key may be dead where it does not stand at its frame: it is compared, not read. As long as
// nothing changes but by what is released here, those that stood stand, up to their turn.
void EditableMotionCurve::_releaseScatteredKeys(Exchange& exchange) {
    constexpr std::size_t keyDistance = 16;
    constexpr std::size_t nodeDistance = 8;
    const std::vector<std::pair<EditableMotionCurveKey*, Index>> entries(
        exchange.toRelease.constKeyValueBegin(), exchange.toRelease.constKeyValueEnd());
    std::vector<bool> standing(entries.size());
    for (const std::size_t i : FrameOrder(entries, [](const auto& entry) { return entry.second; })) {
        const auto [key, frame] = entries[i];
        const auto place = findBeside(frame);
        standing[i] = place != MotionCurve::end() && _toEditableIterator(place)->second == key;
    }
    bool isAsItWas = true; // but for what leaves here
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (isAsItWas && i + keyDistance < entries.size() && entries.size() >= worthPrefetching) {
            prefetch(entries[i + keyDistance].first);
            const EditableMotionCurveKey* const next = entries[i + nodeDistance].first;
            if (standing[i + nodeDistance] && isHere(next->_placement())) { // Unless it is named twice.
                prefetchNode(next->_placement().position);
            }
        }
        const auto [key, frame] = entries[i];
        auto place = MotionCurve::end();
        if (!isAsItWas) {
            place = findBeside(frame);
        } else if (standing[i]) {
            place = findKey(*key->_record());
        }
        const std::size_t before = revision();
        const bool isReleased = _releaseKey(exchange, key, frame, place);
        isAsItWas = isAsItWas && revision() == before + (isReleased ? 1U : 0U);
    }
}

// One turn: whether the key stands at place, and was released.
bool EditableMotionCurve::_releaseKey(Exchange& exchange, EditableMotionCurveKey* key, Index frame,
                                      MotionCurve::iterator place) {
    const auto position = _toEditableIterator(place);
    const bool isReleased = position != end() && position->second == key && _release(position) != nullptr;
    if (!isReleased) {
        exchange.leaveOut(key, frame);
    }
    ++exchange.turn;
    return isReleased;
}

void EditableMotionCurve::_insertKeys(Exchange& exchange) {
    const KeysIndexMap& toInsert = exchange.toInsert;
    for (auto entry = toInsert.cbegin(); entry != toInsert.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        const Index frame = entry.value();
        if (key == nullptr || _isHeld(*key)) {
            continue; // A key has one owner: what stands in a curve is not taken in a second time.
        }
        if (EditableMotionCurveKey* const displaced = release(frame)) {
            exchange.steps.push_back({displaced, frame, false});
        }
        _takeIn(frame, key);
        exchange.steps.push_back({key, frame, true});
        Q_EMIT keyAdded(key);
    }
}

// Back to what stood here before, announced like the way there. What slots throw now is dropped; a key that
// they took elsewhere meanwhile is left there.
void EditableMotionCurve::_takeBack(const Exchange& exchange) {
    BatchWithFrames batch(*this, exchange.announcedGreatest);
    FirstException dropped;
    const auto putBack = [&](EditableMotionCurveKey* key, Index frame) {
        if (key->getParentCurve() == nullptr) {
            dropped.guard([&] { _putBack(key, frame); });
        }
    };
    for (auto step = exchange.steps.rbegin(); step != exchange.steps.rend(); ++step) {
        if (!step->hasEntered) {
            putBack(step->key, step->frame);
        } else if (_holds(step->key)) {
            dropped.guard([&] { Q_EMIT keyAboutToBeRemoved(step->key); });
            if (_holds(step->key)) {
                detach(findKey(*step->key->_record())).release();
                _disconnectKey(step->key);
            }
        }
    }
    for (auto entry = exchange.toRelease.cbegin(); entry != exchange.turn; ++entry) {
        if (exchange.hasLeft(entry.key(), entry.value())) {
            putBack(entry.key(), entry.value());
        }
    }
    dropped.guard([&] { batch.end(); });
}

} // namespace ZT
