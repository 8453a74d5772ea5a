#pragma once

#include <QPointF>
#include <QRectF>
#include <QVector>

#include <optional>

class QPainter;

namespace Editor {

/// Draws a line through points that may lie anywhere, with the painter's pen; what is outside the bounds is
/// cut off before the painter sees it.
class ClippedPolyline {
public:
    ClippedPolyline(QPainter& painter, const QRectF& bounds);

    void add(const QPointF& point);
    /// The next point begins another line. Also due after the last point: draws what is still to be drawn.
    void lift();

private:
    void _draw();

    QPainter& _painter;
    QRectF _bounds;
    std::optional<QPointF> _last;
    QVector<QPointF> _points; ///< not drawn yet
};

} // namespace Editor
