#pragma once

#include <QMouseEvent>
#include <QPointF>

namespace Editor {

/// Where in its widget the pointer was, in pixels and parts of them.
inline QPointF positionOf(const QMouseEvent& event) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.position(); // What Qt 5 does not know, and what Qt 6 warns of when it is not used.
#else
    return event.localPos();
#endif
}

} // namespace Editor
