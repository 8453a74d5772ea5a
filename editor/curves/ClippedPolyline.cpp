#include "curves/ClippedPolyline.h"

#include "curves/PixelLines.h"

#include <QPainter>

namespace Editor {

namespace {

// The painter takes far longer for one line that crosses itself often than for many short ones.
constexpr int mostPoints = 32;

} // namespace

ClippedPolyline::ClippedPolyline(QPainter& painter, const QRectF& bounds)
    : _painter(painter)
    , _bounds(bounds) {}

void ClippedPolyline::add(const QPointF& point) {
    QPointF from = _last.value_or(point);
    QPointF to = point;
    if (_last && *_last != point && clipLine(from, to, _bounds)) {
        if (_points.isEmpty() || _points.back() != from) {
            _draw();
            _points.append(from);
        }
        _points.append(to);
        if (_points.size() == mostPoints) {
            _draw();
            _points.append(to);
        }
    }
    _last = point;
}

void ClippedPolyline::lift() {
    _draw();
    _last.reset();
}

void ClippedPolyline::_draw() {
    if (_points.size() > 1) {
        _painter.drawPolyline(_points.constData(), static_cast<int>(_points.size()));
    }
    _points.clear();
}

} // namespace Editor
