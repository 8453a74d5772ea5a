#include "commands/DetachedKeys.h"

#include "model/EditableMotionCurve.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>

namespace ZT::AnimCmd {

namespace {

bool isOutside(const EditableMotionCurveKey* key) {
    return key != nullptr && key->getParentCurve() == nullptr;
}

} // namespace

DetachedKeys::Detached::Detached(EditableMotionCurveKey* aKey, bool isToBeOwned)
    : address(aKey)
    , key(aKey)
    , placings(aKey->_placement().placings)
    , isOwned(isToBeOwned) {}

bool DetachedKeys::Detached::isOurs() const {
    return isOwned && !isTaken();
}

bool DetachedKeys::Detached::isTaken() const {
    return !isOutside(key) || key->_placement().placings != placings;
}

DetachedKeys::~DetachedKeys() {
    for (const Detached& detached : _keys) {
        if (detached.isOurs()) {
            delete detached.key.data();
        }
    }
}

void DetachedKeys::add(const std::vector<EditableMotionCurveKey*>& keys) {
    const std::size_t before = _keys.size();
    try {
        for (EditableMotionCurveKey* const key : keys) {
            _add(key);
        }
    } catch (...) {
        _keys.erase(_keys.begin() + static_cast<std::ptrdiff_t>(before), _keys.end());
        throw;
    }
}

void DetachedKeys::_add(EditableMotionCurveKey* key) {
    // A key that a curve created names that curve before the curve holds it. It is cut loose here, since the
    // curve may die before the command.
    EditableMotionCurve* const curve = key != nullptr ? key->getParentCurve() : nullptr;
    if (curve != nullptr && curve->_find(key) == curve->end()) {
        curve->_disconnectKey(key);
    }
    if (isOutside(key)) {
        _keys.emplace_back(key, true);
    }
}

void DetachedKeys::watch(const std::vector<EditableMotionCurveKey*>& keys) {
    for (EditableMotionCurveKey* const key : keys) {
        _keys.emplace_back(key, false);
    }
}

void DetachedKeys::letGoOfTakenKeys() {
    const auto isTaken = [](const Detached& detached) { return detached.isTaken(); };
    _keys.erase(std::remove_if(_keys.begin(), _keys.end(), isTaken), _keys.end());
}

void DetachedKeys::letGoOfTakenKeys(std::initializer_list<CurvesKeysMap*> maps) {
    for (const Detached& detached : _keys) {
        for (CurvesKeysMap* const map : maps) {
            for (auto curve = map->begin(); detached.key.isNull() && curve != map->end(); ++curve) {
                curve->remove(detached.address);
            }
        }
    }
    letGoOfTakenKeys();
}

void DetachedKeys::letGoOfHeldKeys() {
    const auto isHeld = [](const Detached& detached) { return !isOutside(detached.key); };
    _keys.erase(std::remove_if(_keys.begin(), _keys.end(), isHeld), _keys.end());
    for (Detached& detached : _keys) {
        detached.placings = detached.key->_placement().placings;
    }
}

std::vector<EditableMotionCurveKey*> DetachedKeys::keys() const {
    std::vector<EditableMotionCurveKey*> keys;
    keys.reserve(_keys.size());
    for (const Detached& detached : _keys) {
        if (detached.isOurs()) {
            keys.push_back(detached.address);
        }
    }
    std::sort(keys.begin(), keys.end(), std::less<>());
    return keys;
}

void DetachedKeys::makeRoomFor(const DetachedKeys& other) {
    _keys.reserve(_keys.size() + other._keys.size());
}

void DetachedKeys::addAll(DetachedKeys& other) {
    _keys.insert(_keys.end(), std::make_move_iterator(other._keys.begin()),
                 std::make_move_iterator(other._keys.end()));
    other._keys.clear();
}

} // namespace ZT::AnimCmd
