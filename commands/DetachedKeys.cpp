#include "commands/DetachedKeys.h"

#include "model/EditableMotionCurve.h"

#include <algorithm>
#include <iterator>

namespace ZT::AnimCmd {

namespace {

bool isOutside(const EditableMotionCurveKey* key) {
    return key != nullptr && key->getParentCurve() == nullptr;
}

} // namespace

DetachedKeys::~DetachedKeys() {
    for (const auto& key : _keys) {
        if (isOutside(key.data())) {
            delete key.data();
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
        _keys.resize(before);
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
        _keys.emplace_back(key);
    }
}

void DetachedKeys::letGoOfHeldKeys() {
    const auto held = [](const auto& key) { return !isOutside(key.data()); };
    _keys.erase(std::remove_if(_keys.begin(), _keys.end(), held), _keys.end());
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
