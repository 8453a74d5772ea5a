#pragma once

#include <QPointF>
#include <QRect>

namespace Editor {

class ViewAxis;

/// Where frames and values lie in a widget, for one size and one part shown: a value, which does not follow
/// its axes. The plot may be empty; positions are finite all the same.
class CurvePlacement {
public:
    CurvePlacement(const ViewAxis& frames, const ViewAxis& values, const QRect& plot);

    const QRect& plot() const noexcept { return _plot; }

    /// Pixels may lie far outside the widget: what has to become an integer is clipped before.
    double toX(double frame) const noexcept { return _plot.left() + (frame - _firstFrame) * _pixelsPerFrame; }
    double toY(double value) const noexcept {
        return _plot.top() + (_highestValue - value) * _pixelsPerValue;
    }
    QPointF toPoint(double frame, double value) const noexcept { return {toX(frame), toY(value)}; }

    double toFrame(double x) const noexcept { return _firstFrame + (x - _plot.left()) / _pixelsPerFrame; }
    double toValue(double y) const noexcept { return _highestValue - (y - _plot.top()) / _pixelsPerValue; }
    /// x the frame, y the value.
    QPointF toPosition(const QPointF& point) const noexcept {
        return {toFrame(point.x()), toValue(point.y())};
    }

    /// The whole frame next to @p x, among those that a key can have.
    unsigned int nearestFrame(double x) const;

    double pixelsPerFrame() const noexcept { return _pixelsPerFrame; }
    double pixelsPerValue() const noexcept { return _pixelsPerValue; }
    double firstFrame() const noexcept { return _firstFrame; }
    double lastFrame() const noexcept { return _lastFrame; }
    double lowestValue() const noexcept { return _lowestValue; }
    double highestValue() const noexcept { return _highestValue; }

private:
    QRect _plot;
    double _firstFrame;
    double _lastFrame;
    double _lowestValue;
    double _highestValue;
    double _pixelsPerFrame;
    double _pixelsPerValue;
};

} // namespace Editor
