#pragma once

#include "TwinKeys.h"
#include "model/EditableMotionCurveExceptions.h"

#include <QPointF>

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <vector>

/// A curve and its plain counterpart, edited side by side at random.
class Twins {
    using C = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;
    using Side = ZT::TangentSide;

public:
    Twins() { _recorder.watch(_curve); }

    void edit() {
        switch (Choices::pick(22)) {
        case 0:
        case 1:
            return insert();
        case 2:
        case 3:
            return move();
        case 4:
        case 5:
            return reorganize();
        case 6:
        case 7:
            return replace();
        case 8:
            return translate();
        case 9:
            return release();
        case 10:
            return setParameters();
        case 11:
            return setOneOffset();
        case 12:
            return setOffsets();
        case 13:
            return setOneType();
        case 14:
            return setTypes();
        case 15:
            return setFlags(&C::setKeysSmooth, &C::setKeysSmooth, &PlainCurve::setSmooth);
        case 16:
            return setFlags(&C::setKeysSymmetrical, &C::setKeysSymmetrical, &PlainCurve::setSymmetrical);
        case 17:
            return restore();
        case 18:
            return editOneKey();
        case 19:
            _curve.updateBezierAutoTangents();
            return _plain.updateTangents();
        case 20:
            return remove();
        default:
            return clearSeldom();
        }
    }

    void compare() {
        RC_ASSERT(_recorder.take().toStdString() == _plain.takeSignals());
        RC_ASSERT(state() == _plain.state());
    }

private:
    using Strangers = TwinKeys::Strangers;
    using SetOfOneState = void (C::*)(const C::KeysSet&, bool);
    using SetOfOwnStates = void (C::*)(const C::KeyStateMap&);
    using PlainFlag = void (PlainCurve::*)(PlainKey&, bool);

    void insert() {
        if (Key* const key = _keys.any(Strangers::none)) {
            const unsigned int frame = Choices::aFrame();
            const auto position = _curve.insert(frame, key);
            _plain.insert(frame, *_keys.plain(key));
            RC_ASSERT(position->second == key);
        }
    }

    void move() {
        TwinKeys::With<QPointF> targets =
            _keys.some<QPointF>([] { return QPointF(Choices::aPosition(), 0.5 * Choices::pick(-6, 7)); });
        // Which of two keys at one frame decides the direction is open: only one of them is moved.
        for (auto entry = targets.begin(); entry != targets.end();) {
            const bool isTie = std::any_of(targets.begin(), entry, [&](const auto& earlier) {
                return ZT::index(earlier.first) == ZT::index(entry->first);
            });
            entry = isTie ? targets.erase(entry) : std::next(entry);
        }
        const C::KeyPosMap map = TwinKeys::toMap<C::KeyPosMap>(targets);
        _curve.moveKeys(map);
        _plain.moveKeys(_keys.entries(map));
    }

    void reorganize() {
        const auto map = _keys.someFrames();
        std::vector<Key*> failed;
        try {
            _curve.reorganizeKeys(map);
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            RC_ASSERT(!failure.failedKeys.empty());
            failed = failure.failedKeys;
        }
        std::vector<PlainKey*> plainFailed;
        for (Key* const key : failed) {
            plainFailed.push_back(_keys.plain(key));
        }
        RC_ASSERT(_plain.reorganize(_keys.entries(map)) == plainFailed);
    }

    void replace() {
        const auto toRelease = _keys.someFrames();
        C::KeysIndexMap held;
        for (auto entry = toRelease.cbegin(); entry != toRelease.cend(); ++entry) {
            held.insert(entry.key(), Choices::pick(4) == 3 ? entry.value() : ZT::index(entry.key()));
        }
        // Only keys that will be in no curve by then may be inserted.
        C::KeysIndexMap toInsert = _keys.someFrames();
        for (auto entry = toInsert.begin(); entry != toInsert.end();) {
            Key* const key = entry.key();
            const bool isFree = key == nullptr || key->getParentCurve() == nullptr ||
                                (held.contains(key) && _curve.getKey(held[key]) == key);
            entry = isFree ? std::next(entry) : toInsert.erase(entry);
        }
        std::map<PlainKey*, unsigned int> left;
        const C::KeysIndexMap result = _curve.releaseAndInsertKeys(held, toInsert);
        for (auto entry = result.cbegin(); entry != result.cend(); ++entry) {
            left[_keys.plain(entry.key())] = entry.value();
        }
        RC_ASSERT(_plain.releaseAndInsert(_keys.entries(held), _keys.entries(toInsert)) == left);
    }

    void translate() {
        if (Key* const key = _keys.any(Strangers::all)) {
            const unsigned int frame = Choices::aFrame();
            RC_ASSERT(_curve.translateKey(key, frame) == _plain.translate(*_keys.plain(key), frame));
        }
    }

    void release() {
        const unsigned int frame = Choices::aFrame();
        RC_ASSERT(_keys.plain(_curve.release(frame)) == _plain.leave(frame, PlainKey::Home::nowhere));
    }

    void remove() {
        const unsigned int frame = Choices::aFrame();
        _curve.remove(frame);
        _plain.leave(frame, PlainKey::Home::destroyed);
    }

    void clearSeldom() {
        if (Choices::pick(6) == 5) {
            _curve.clear();
            _plain.clear();
        }
    }

    void setParameters() {
        const auto set = _keys.aSet();
        const auto type = Choices::aType();
        const bool smooth = Choices::yesOrNo();
        const bool symmetrical = Choices::yesOrNo();
        _curve.setKeysParam(set, type, smooth, symmetrical);
        _plain.editEach(_keys.entries(set), [&](PlainKey& key, bool) {
            _plain.setType(key, Side::left, type);
            _plain.setType(key, Side::right, type);
            _plain.setSmooth(key, smooth);
            _plain.setSymmetrical(key, symmetrical);
        });
    }

    void setOneOffset() {
        const auto set = _keys.aSet();
        const auto side = Choices::aSide();
        const auto offset = Choices::anOffset();
        _curve.moveTangents(set, side, offset);
        _plain.editEach(_keys.entries(set),
                        [&](PlainKey& key, bool) { _plain.setOffset(key, side, TwinKeys::plainOf(offset)); });
    }

    void setOffsets() {
        const auto map = _keys.someOffsets();
        const auto side = Choices::aSide();
        _curve.moveTangents(map, side);
        _plain.editEach(_keys.entries(map),
                        [&](PlainKey& key, const auto& offset) { _plain.setOffset(key, side, offset); });
    }

    void setOneType() {
        C::KeySideMap map;
        for (const auto& [key, side] : _keys.some<Side>(Choices::aSide)) {
            map.insert(key, side);
            map.insert(key, Choices::aSide());
        }
        const auto type = Choices::aType();
        _curve.setTangentsType(map, type);
        _plain.editEach(_keys.entries(map),
                        [&](PlainKey& key, Side side) { _plain.setType(key, side, type); });
    }

    void setTypes() {
        const auto map = _keys.someTypes();
        _curve.setTangentsType(map);
        _plain.editEach(_keys.entries(map), [&](PlainKey& key, const auto& type) {
            _plain.setType(key, type.first, type.second);
        });
    }

    /// By both forms of the slot: one state for a set of keys, and a state for each key.
    void setFlags(SetOfOneState setOfOne, SetOfOwnStates setOfOwn, PlainFlag plainFlag) {
        const bool state = Choices::yesOrNo();
        const auto set = _keys.aSet();
        (_curve.*setOfOne)(set, state);
        _plain.editEach(_keys.entries(set), [&](PlainKey& key, bool) { (_plain.*plainFlag)(key, state); });
        const auto map = _keys.someStates();
        (_curve.*setOfOwn)(map);
        _plain.editEach(_keys.entries(map), [&](PlainKey& key, bool own) { (_plain.*plainFlag)(key, own); });
    }

    void restore() {
        const auto types = _keys.someTypes();
        const auto left = _keys.someOffsets();
        const auto right = _keys.someOffsets();
        const auto smooth = _keys.someStates();
        const auto symmetrical = _keys.someStates();
        _curve.restoreKeys(types, left, right, smooth, symmetrical);
        _plain.restore(_keys.entries(types), _keys.entries(left), _keys.entries(right), _keys.entries(smooth),
                       _keys.entries(symmetrical));
    }

    void editOneKey() {
        if (Key* const key = _keys.any(Strangers::none)) {
            const auto value = static_cast<float>(Choices::pick(-6, 7));
            const auto side = Choices::aSide();
            const auto type = Choices::aType();
            const auto offset = Choices::anOffset();
            key->setValue(value);
            _plain.setValue(*_keys.plain(key), value);
            key->setTangentType(side, type);
            _plain.setType(*_keys.plain(key), side, type);
            key->setTangentOffset(side, offset);
            _plain.setOffset(*_keys.plain(key), side, TwinKeys::plainOf(offset));
        }
    }

    /// What the curve shows from outside, in the words of its plain counterpart.
    std::string state() const {
        std::vector<unsigned int> frames;
        for (const auto element : _curve) {
            frames.push_back(element.first);
        }
        return PlainCurve::describe(frames, _keys.asSeenFrom(_curve));
    }

    SignalRecorder _recorder;
    PlainCurve _plain;
    TwinKeys _keys{_plain, _recorder};
    C _curve;
};
