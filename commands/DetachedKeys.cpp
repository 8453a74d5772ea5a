#include "commands/DetachedKeys.h"

#include "model/EditableMotionCurve.h"

#include <algorithm>
#include <iterator>

namespace ZT::AnimCmd {

namespace {

// A key that a curve created has that curve as its parent before the curve holds it.
bool isOutside(const EditableMotionCurveKey* key) {
    const EditableMotionCurve* const curve = key != nullptr ? key->getParentCurve() : nullptr;
    return key != nullptr && (curve == nullptr || curve->_find(key) == curve->end());
}

} // namespace

DetachedKeys::~DetachedKeys() {
    for (const auto& key : _keys) {
        if (isOutside(key.data())) {
            delete key.data();
        }
    }
}

void DetachedKeys::add(EditableMotionCurveKey* key) {
    if (isOutside(key)) {
        _keys.emplace_back(key);
    }
}

void DetachedKeys::letGoOfHeldKeys() {
    const auto held = [](const auto& key) { return !isOutside(key.data()); };
    _keys.erase(std::remove_if(_keys.begin(), _keys.end(), held), _keys.end());
}

void DetachedKeys::addAll(DetachedKeys& other) {
    _keys.insert(_keys.end(), std::make_move_iterator(other._keys.begin()),
                 std::make_move_iterator(other._keys.end()));
    other._keys.clear();
}

} // namespace ZT::AnimCmd
