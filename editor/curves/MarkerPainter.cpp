#include "curves/MarkerPainter.h"

#include "curves/ReadableColour.h"
#include "model/AnimationMarkers.h"

#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace Editor {

namespace {

constexpr double flagSize = 6.0; // pixels

} // namespace

MarkerPainter::MarkerPainter(QPainter& painter, const CurvePlacement& placement, const QPalette& palette,
                             const ZT::AnimationMarkers& markers)
    : _painter(painter)
    , _placement(placement)
    , _palette(palette)
    , _markers(markers) {}

void MarkerPainter::paintGround() {
    QColor silent = _palette.color(QPalette::Text);
    silent.setAlpha(14);
    _shade(_placement.firstFrame(), std::min(_markers.startIndex(), _markers.endIndex()), silent);
    _shade(std::max(_markers.startIndex(), _markers.endIndex()), _placement.lastFrame(), silent);
    if (_markers.isRangeVisible()) {
        QColor range = _palette.color(QPalette::Highlight);
        range.setAlpha(48);
        _shade(_markers.rangeStartIndex(), _markers.rangeEndIndex(), range);
    }
}

void MarkerPainter::paintLines() {
    const QColor base = _palette.color(QPalette::Base);
    const QColor limit = mixed(base, _palette.color(QPalette::Text), 0.55);
    if (_markers.isRangeVisible()) {
        const QColor range = readableOn(base, _palette.color(QPalette::Highlight));
        _paintLine(_markers.rangeStartIndex(), range, 1);
        _paintLine(_markers.rangeEndIndex(), range, -1);
    }
    _paintLine(_markers.startIndex(), limit, 1);
    _paintLine(_markers.endIndex(), limit, -1);
}

void MarkerPainter::paintCurrentFrame() {
    const QColor base = _palette.color(QPalette::Base);
    _paintLine(_markers.selectedIndex(), readableOn(base, QColor(230, 70, 50)), 0);
}

QRect MarkerPainter::reachOf(const CurvePlacement& placement, unsigned int frame) {
    const QRect& plot = placement.plot();
    const double x = std::floor(placement.toX(frame));
    if (x < plot.left() || x > plot.right()) {
        return {};
    }
    constexpr int reach = static_cast<int>(flagSize) + 2;
    return {static_cast<int>(x) - reach, plot.top() - reach, 2 * reach + 1, plot.height() + 2 * reach};
}

void MarkerPainter::_shade(double firstFrame, double lastFrame, const QColor& colour) {
    const QRectF plot(_placement.plot());
    const double left = std::max(plot.left(), _placement.toX(firstFrame));
    const double right = std::min(plot.right(), _placement.toX(lastFrame));
    if (left < right) {
        _painter.fillRect(QRectF(left, plot.top(), right - left, plot.height()), colour);
    }
}

void MarkerPainter::_paintLine(double frame, const QColor& colour, int direction) {
    const QRectF plot(_placement.plot());
    const double x = std::floor(_placement.toX(frame)) + 0.5;
    if (x < plot.left() || x > plot.right()) {
        return;
    }
    constexpr double size = flagSize;
    const double top = plot.top() - size;
    _painter.setPen(colour);
    _painter.drawLine(QPointF(x, top), QPointF(x, plot.bottom()));
    QPolygonF flag;
    flag << QPointF(direction > 0 ? x : x - size, top) << QPointF(direction < 0 ? x : x + size, top)
         << QPointF(x, plot.top());
    _painter.setPen(Qt::NoPen);
    _painter.setBrush(colour);
    _painter.drawPolygon(flag);
}

} // namespace Editor
