#pragma once

#include "model/EditableMotionCurve.h"

#include <QPointer>

#include <rapidcheck.h>

#include <set>
#include <vector>

/// All keys that were ever made for a test, and which of them live. It owns none of them and does not listen
/// to them, so that keys behave as those to which nobody listens.
class KeyCensus {
public:
    using Key = ZT::EditableMotionCurveKey;
    using Curve = ZT::EditableMotionCurve;
    using Keys = std::set<Key*>;

    Key* add(Key* key) {
        _keys.emplace_back(key);
        return key;
    }

    Keys alive() const {
        Keys keys;
        for (const QPointer<Key>& key : _keys) {
            if (!key.isNull()) {
                keys.insert(key.data());
            }
        }
        return keys;
    }

    /// The living keys that say that they belong to no curve.
    Keys outside() const {
        Keys keys;
        for (Key* const key : alive()) {
            if (key->getParentCurve() == nullptr) {
                keys.insert(key);
            }
        }
        return keys;
    }

    static Keys heldBy(const std::vector<Curve*>& curves) {
        Keys keys;
        for (Curve* const curve : curves) {
            for (const auto element : *curve) {
                keys.insert(element.second);
            }
        }
        return keys;
    }

    /// Each living key that names a curve is held by that curve and by no other, and no curve holds a dead
    /// key.
    void requireOneCurveEach(const std::vector<Curve*>& curves) const {
        const Keys living = alive();
        std::size_t held = 0;
        for (Curve* const curve : curves) {
            for (const auto element : *curve) {
                RC_ASSERT(living.count(element.second) == 1U);
                RC_ASSERT(element.second->getParentCurve() == curve);
                ++held;
            }
        }
        RC_ASSERT(held + outside().size() == living.size());
    }

private:
    std::vector<QPointer<Key>> _keys;
};
