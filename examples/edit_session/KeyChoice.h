#pragma once

#include "model/EditableMotionCurve.h"

#include <QSet>

#include <algorithm>
#include <cstddef>
#include <vector>

/// Which keys an edit of the session takes.
namespace KeyChoice {

using Key = ZT::EditableMotionCurveKey;
using Curve = ZT::EditableMotionCurve;

/// All keys, in frame order.
std::vector<Key*> keysOf(Curve& curve);

/// The keys that meet a condition, in frame order.
template <class Condition>
std::vector<Key*> keysThat(Curve& curve, Condition condition) {
    std::vector<Key*> keys = keysOf(curve);
    keys.erase(std::remove_if(keys.begin(), keys.end(), [&](const Key* key) { return !condition(*key); }),
               keys.end());
    return keys;
}

/// Up to @p count neighbours in the middle of @p keys.
std::vector<Key*> middleOf(const std::vector<Key*>& keys, std::size_t count);

QSet<Key*> toSet(const std::vector<Key*>& keys);

/// How far the curve's values reach, to choose an edit that shows; 1 for a level curve.
double reachOf(const Curve& curve);

/// The free frames behind a key; behind the last key twenty, as far as frames go on.
unsigned int roomBehind(Curve& curve, const Key* key);

/// The key with the most room behind it; null without keys.
Key* keyWithMostRoom(Curve& curve);

/// Whether a key has room behind it.
bool hasFreeFrame(Curve& curve);

} // namespace KeyChoice
