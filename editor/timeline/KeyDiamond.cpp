#include "timeline/KeyDiamond.h"

#include <QPainter>

#include <cmath>

namespace Editor {

KeyDiamond::KeyDiamond(int radius, const QColor& fill, const QColor& outline, double ratio)
    : _reach(radius + 1) {
    const int width = 2 * _reach + 1;
    _pixmap = QPixmap(QSize(width, width) * ratio);
    _pixmap.setDevicePixelRatio(ratio);
    _pixmap.fill(Qt::transparent);
    QPainter painter(&_pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(outline);
    painter.setBrush(fill);
    painter.translate(_reach + 0.5, _reach + 0.5);
    painter.drawPolygon(
        QPolygonF{{{-1.0 * radius, 0.0}, {0.0, -1.0 * radius}, {1.0 * radius, 0.0}, {0.0, 1.0 * radius}}});
}

void KeyDiamond::draw(QPainter& painter, int x, int y) const {
    painter.drawPixmap(x - _reach, y - _reach, _pixmap);
}

} // namespace Editor
