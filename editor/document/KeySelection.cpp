#include "document/KeySelection.h"

#include "document/Document.h"

#include <QHash>

#include <iterator>
#include <utility>

namespace Editor {

KeySelection::KeySelection(Document& document)
    : _document(document) {
    _later.setSingleShot(true);
    connect(&_later, &QTimer::timeout, this, &KeySelection::changed);
}

void KeySelection::set(Keys keys) {
    QHash<const ZT::EditableMotionCurve*, bool> isEditable; // Asked once for each curve.
    for (auto key = keys.begin(); key != keys.end();) {
        const ZT::EditableMotionCurve* const curve = (*key)->getParentCurve();
        if (!isEditable.contains(curve)) {
            isEditable.insert(curve, _document.isEditable(curve));
        }
        key = isEditable.value(curve) ? std::next(key) : keys.erase(key);
    }
    if (keys != _keys) {
        _keys.swap(keys);
        Q_EMIT changed();
    }
}

void KeySelection::add(const Keys& keys) {
    set(_keys + keys);
}

void KeySelection::toggle(const Keys& keys) {
    set((_keys - keys) + (keys - _keys));
}

void KeySelection::selectAll() {
    set(_allKeys());
}

void KeySelection::invert() {
    set(_allKeys() - _keys);
}

void KeySelection::prune() {
    set(_keys);
}

void KeySelection::observe(ZT::EditableMotionCurve* curve) const {
    connect(curve, &ZT::EditableMotionCurve::keyAboutToBeRemoved, this, &KeySelection::_remove,
            Qt::UniqueConnection);
}

void KeySelection::forget() {
    if (!_keys.isEmpty()) {
        _keys.clear();
        Q_EMIT changed();
    }
}

void KeySelection::_remove(ZT::EditableMotionCurveKey* key) {
    if (_keys.remove(key) && !_later.isActive()) { // Once for all keys that leave together.
        _later.start();
    }
}

KeySelection::Keys KeySelection::_allKeys() const {
    Keys keys;
    for (ZT::EditableAnimationLayer* const layer : _document.animation()) {
        if (_document.isEditable(layer->getCurve())) {
            for (const auto& [frame, key] : *layer->getCurve()) {
                keys.insert(key);
            }
        }
    }
    return keys;
}

} // namespace Editor
