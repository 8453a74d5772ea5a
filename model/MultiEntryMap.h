#pragma once

#include <QMap>
#include <QMultiMap>

namespace ZT {

/// A map that may hold several entries for a key. Qt 5's QMultiMap is a QMap and can be given for one; Qt 6's
/// is a class of its own, and its QMap holds one entry for a key.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
template <class Key, class Value>
using MultiEntryMap = QMap<Key, Value>;
#else
template <class Key, class Value>
using MultiEntryMap = QMultiMap<Key, Value>;
#endif

} // namespace ZT
