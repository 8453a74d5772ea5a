#pragma once

#include "model/EditableMotionCurve.h"

#include <initializer_list>
#include <utility>

/// A map made of entries of which a key may have two, the later one first. Qt 6's QMap holds one for a key.
constexpr bool mapsHoldTwoEntries = QT_VERSION < QT_VERSION_CHECK(6, 0, 0);

inline ZT::EditableMotionCurve::KeysIndexMap
entriesOf(std::initializer_list<std::pair<ZT::EditableMotionCurveKey*, unsigned int>> entries) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QMultiMap<ZT::EditableMotionCurveKey*, unsigned int> map;
#else
    ZT::EditableMotionCurve::KeysIndexMap map;
#endif
    for (const auto& [key, frame] : entries) {
        map.insert(key, frame);
    }
    return map;
}
