#include "curves/ViewPicture.h"

#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

namespace Editor {

void ViewPicture::paint(QPainter& painter, const QWidget& view, const std::function<void(QPainter&)>& paint) {
    if (painter.paintEngine()->type() != QPaintEngine::Raster) {
        paint(painter);
        return;
    }
    const double ratio = painter.device()->devicePixelRatioF();
    const QSize size = (QSizeF(view.size()) * ratio).toSize();
    if (_pixmap.size() != size || _pixmap.devicePixelRatioF() != ratio) {
        _pixmap = QPixmap(size);
        _pixmap.setDevicePixelRatio(ratio);
        _isSpoilt = true;
    }
    if (_isSpoilt) {
        _pixmap.fill(view.palette().color(view.backgroundRole()));
        QPainter anew(&_pixmap);
        anew.setFont(painter.font());
        anew.setPen(painter.pen());
        anew.setLayoutDirection(painter.layoutDirection());
        paint(anew);
        _isSpoilt = false; // What could not be finished is spoilt still.
    }
    painter.drawPixmap(0, 0, _pixmap);
}

} // namespace Editor
