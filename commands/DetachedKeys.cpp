#include "commands/DetachedKeys.h"

#include <algorithm>
#include <iterator>

namespace ZT::AnimCmd {

namespace {

bool isOutside(const QPointer<EditableMotionCurveKey>& key) {
    return !key.isNull() && key->getParentCurve() == nullptr;
}

} // namespace

DetachedKeys::~DetachedKeys() {
    for (const auto& key : _keys) {
        if (isOutside(key)) {
            delete key.data();
        }
    }
}

void DetachedKeys::add(EditableMotionCurveKey* key) {
    if (key != nullptr && key->getParentCurve() == nullptr) {
        _keys.emplace_back(key);
    }
}

void DetachedKeys::letGoOfHeldKeys() {
    const auto held = [](const auto& key) { return !isOutside(key); };
    _keys.erase(std::remove_if(_keys.begin(), _keys.end(), held), _keys.end());
}

void DetachedKeys::addAll(DetachedKeys& other) {
    _keys.insert(_keys.end(), std::make_move_iterator(other._keys.begin()),
                 std::make_move_iterator(other._keys.end()));
    other._keys.clear();
}

} // namespace ZT::AnimCmd
