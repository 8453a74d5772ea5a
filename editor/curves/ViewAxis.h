#pragma once

#include <QObject>

#include <algorithm>

namespace Editor {

/// One direction of a view: which part of the frames or of the values it shows. Curve view and timeline share
/// that of the frames. Always finite, and never narrower or wider than its limits.
class ViewAxis : public QObject {
    Q_OBJECT

public:
    /// @p narrowest and @p widest limit the span; the axis never leaves [@p lowest, @p highest].
    ViewAxis(double narrowest, double widest, double lowest, double highest);

    /// Frames: from a little before 0 to the last possible one.
    static ViewAxis* forFrames(QObject* parent);
    /// Values: floats of any size.
    static ViewAxis* forValues(QObject* parent);

    double first() const noexcept { return _first; }
    double last() const noexcept { return _last; }
    double span() const noexcept { return _last - _first; }

    /// Shows from @p first to @p last, or as much as the limits allow. What is not finite is ignored.
    void show(double first, double last);
    /// Makes the span @p factor times as large, as far as the limits allow; the position @p at stays where it
    /// is.
    void zoom(double factor, double at);
    void pan(double distance);

    /// Where a position lies on @p length pixels, the first one at 0. No pixels count as one.
    double toPixel(double position, int length) const {
        return (position - _first) / span() * std::max(1, length);
    }
    double fromPixel(double pixel, int length) const { return _first + pixel / std::max(1, length) * span(); }

    /// The distance of ticks: 1, 2 or 5 times a power of ten, so that they are at least @p apart pixels
    /// apart.
    double tickStep(int length, double apart) const;
    /// The smallest of 1, 2 or 5 times a power of ten that is not below @p least, which is above 0 and
    /// finite.
    static double niceStep(double least);

Q_SIGNALS:
    void changed();

private:
    double _limited(double span, double around) const;

    double _narrowest;
    double _widest;
    double _lowest;
    double _highest;
    double _first = 0.0;
    double _last = 100.0;
};

} // namespace Editor
