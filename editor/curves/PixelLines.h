#pragma once

#include <QPointF>
#include <QRectF>

namespace Editor {

/// Shortens the line from @p a to @p b to what lies within @p bounds; false when nothing does. Both ends are
/// finite, however far away.
bool clipLine(QPointF& a, QPointF& b, const QRectF& bounds);

/// From @p point to the nearest point of the line from @p a to @p b.
double distanceToLine(const QPointF& point, const QPointF& a, const QPointF& b);

} // namespace Editor
