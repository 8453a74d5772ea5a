#include "window/AlignedCurves.h"

#include "curves/CurveView.h"
#include "timeline/TimelineView.h"

#include <QEvent>

#include <algorithm>

namespace Editor {

AlignedCurves::AlignedCurves(CurveView& curves, TimelineView& timeline, QWidget* parent)
    : QWidget(parent)
    , _curves(curves)
    , _timeline(timeline) {
    curves.setParent(this);
    timeline.viewport()->installEventFilter(this);
}

QSize AlignedCurves::sizeHint() const {
    return _curves.sizeHint().grownBy(_margins());
}

QSize AlignedCurves::minimumSizeHint() const {
    return _curves.minimumSizeHint().grownBy(_margins());
}

bool AlignedCurves::eventFilter(QObject* object, QEvent* event) {
    // Its scroll bar comes and goes, and its fonts may be others.
    if (event->type() == QEvent::Resize || event->type() == QEvent::FontChange) {
        _align();
    }
    return QWidget::eventFilter(object, event);
}

void AlignedCurves::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    _align();
}

QMargins AlignedCurves::_margins() const {
    const QWidget& viewport = *_timeline.viewport();
    const int left = viewport.x() + _timeline.parts().columnWidth() - _curves.placement().plot().left();
    const int right = _timeline.width() - viewport.geometry().right() - 1;
    return {std::max(0, left), 0, std::max(0, right), 0};
}

// At once: a layout would wait, and the views would not fit each other so long.
void AlignedCurves::_align() {
    _curves.setGeometry(rect().marginsRemoved(_margins()));
}

} // namespace Editor
