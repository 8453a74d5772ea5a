#include "timeline/TimelineView.h"

#include "curves/ViewAxis.h"
#include "document/Document.h"
#include "document/Drag.h"
#include "document/KeySelection.h"
#include "model/AnimationMarkers.h"
#include "timeline/TimelineHeader.h"
#include "timeline/TimelineKeyboard.h"
#include "timeline/TimelinePalette.h"
#include "timeline/TimelineRows.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Editor {

namespace {

Qt::CursorShape cursorOf(TimelineTarget::Part part) {
    using Part = TimelineTarget::Part;
    switch (part) {
    case Part::startMarker:
    case Part::endMarker:
    case Part::rangeStart:
    case Part::rangeEnd:
        return Qt::SizeHorCursor;
    case Part::range:
        return Qt::OpenHandCursor;
    default:
        return Qt::ArrowCursor;
    }
}

} // namespace

TimelineView::TimelineView(Document& document, Drag& drag, ViewAxis& frames, QWidget* parent)
    : QAbstractScrollArea(parent)
    , _document(document)
    , _frames(frames)
    , _navigator(document, frames)
    , _keyboard(document, drag, _navigator, *this)
    , _gesture(document, drag) {
    setAccessibleName(tr("Timeline"));
    setAccessibleDescription(tr("Left and Right move the selected keys, with Shift by ten frames. Ctrl+Left "
                                "and Ctrl+Right go to the previous "
                                "and next key, Home and End to the start and end marker, Up and Down to "
                                "another layer. Return selects the "
                                "keys at the current frame, Plus and Minus zoom, Escape cancels."));
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setMouseTracking(true);
    connect(&document, &Document::changed, this, &TimelineView::_repaint);
    connect(&document, &Document::layerInserted, this, &TimelineView::_updateScrollBar);
    connect(&document, &Document::layerRemoved, this, &TimelineView::_updateScrollBar);
    connect(&document, &Document::replaced, this, &TimelineView::_observe);
    connect(&document.selection(), &KeySelection::changed, this, &TimelineView::_repaint);
    connect(&frames, &ViewAxis::changed, this, &TimelineView::_repaint);
    connect(&drag, &Drag::activeChanged, this, [this](bool isActive) {
        if (!isActive) {
            _gesture.dragEnded();
        }
    });
    _observe();
}

void TimelineView::_observe() {
    using Markers = ZT::AnimationMarkers;
    const Markers* const markers = &_document.markers();
    connect(markers, &Markers::selectedIndexChanged, this, &TimelineView::_moveCurrentFrame);
    connect(markers, &Markers::startIndexChanged, this, &TimelineView::_repaint);
    connect(markers, &Markers::endIndexChanged, this, &TimelineView::_repaint);
    connect(markers, &Markers::rangeStartIndexChanged, this, &TimelineView::_repaint);
    connect(markers, &Markers::rangeEndIndexChanged, this, &TimelineView::_repaint);
    connect(markers, &Markers::rangeVisibilityChanged, this, &TimelineView::_repaint);
    _currentFrame = markers->selectedIndex();
    _gesture.end();
    _panned.reset();
    _updateScrollBar();
    _repaint();
}

void TimelineView::_repaint() {
    _picture.spoil();
    viewport()->update();
}

// In the ruler labels come and go with it.
void TimelineView::_moveCurrentFrame(unsigned int frame) {
    const TimelineLayout now = parts();
    viewport()->update(now.ruler());
    viewport()->update(now.lineAt(std::exchange(_currentFrame, frame)));
    viewport()->update(now.lineAt(frame));
}

int TimelineView::currentLayer() const {
    return _currentLayer == nullptr ? -1 : _document.indexOf(_currentLayer);
}

void TimelineView::setCurrentLayer(int index) {
    ZT::EditableAnimationLayer* const layer = _document.layer(index);
    if (layer == _currentLayer) {
        return;
    }
    _currentLayer = layer;
    const int current = currentLayer();
    if (current >= 0) {
        const TimelineLayout now = parts();
        const int top = current * now.rowHeight();
        const int least = top + now.rowHeight() - now.rows().height(); // Above top where no row fits.
        QScrollBar* const bar = verticalScrollBar();
        bar->setValue(std::max(least, std::min(bar->value(), top)));
    }
    _repaint();
    Q_EMIT currentLayerChanged(current);
}

TimelineLayout TimelineView::parts() const {
    return {_frames, fontMetrics(), viewport()->size(), _document.layerCount(), verticalScrollBar()->value()};
}

QSize TimelineView::sizeHint() const {
    return {60 * fontMetrics().averageCharWidth(), 12 * fontMetrics().height()};
}

QSize TimelineView::minimumSizeHint() const {
    return {30 * fontMetrics().averageCharWidth(), 6 * fontMetrics().height()};
}

void TimelineView::_updateScrollBar() {
    const TimelineLayout now = parts();
    verticalScrollBar()->setRange(0, std::max(0, now.rowsHeight() - now.rows().height()));
    verticalScrollBar()->setPageStep(now.rows().height());
    verticalScrollBar()->setSingleStep(now.rowHeight());
}

void TimelineView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    _updateScrollBar();
}

void TimelineView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    _updateScrollBar();
    _repaint(); // The colours or the font may be other ones.
}

void TimelineView::scrollContentsBy(int /*dx*/, int /*dy*/) {
    _repaint();
}

void TimelineView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    const TimelineLayout now = parts();
    const TimelinePalette colours(palette());
    const TimelineRows rows(_document, now, colours, currentLayer());
    const TimelineHeader header(_document.markers(), now, colours);
    _picture.paint(painter, *viewport(), [&](QPainter& onto) {
        rows.paintGrounds(onto);
        header.paintGrounds(onto);
        rows.paintNamesAndKeys(onto);
    });
    header.paintLines(painter);
    if (const QRect band = _gesture.band(now); !band.isEmpty()) {
        painter.setPen(colours.selection);
        painter.setBrush(colours.range);
        painter.drawRect(band.adjusted(0, 0, -1, -1));
    }
    if (hasFocus()) {
        painter.setPen(colours.selection);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

void TimelineView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void TimelineView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void TimelineView::hideEvent(QHideEvent* event) {
    QAbstractScrollArea::hideEvent(event);
    _gesture.cancel(); // The button's release will not come here.
    _panned.reset();
}

bool TimelineView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) {
        _announce(QString());
    } else if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(),
                           TimelineTarget(_document, parts(), help->pos()).description(_document),
                           viewport());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void TimelineView::wheelEvent(QWheelEvent* event) {
    constexpr double notch = 120.0;
    const QPoint angle = event->angleDelta();
    if ((event->modifiers() & Qt::ControlModifier) != 0) {
        const double turned =
            angle.y() != 0 ? angle.y() : angle.x(); // Some platforms turn it with a modifier.
        _frames.zoom(std::pow(zoomStep, -turned / notch), parts().frameAt(event->position().x()));
    } else if (angle.x() != 0) {
        _frames.pan(-0.1 * _frames.span() * angle.x() / notch);
    } else {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    event->accept();
}

void TimelineView::mousePressEvent(QMouseEvent* event) {
    if (isGestureActive()) {
        return;
    }
    if (event->button() == Qt::MiddleButton) {
        _panned = event->pos();
        _beforePan = {_frames.first(), _frames.last(), verticalScrollBar()->value()};
    } else if (event->button() == Qt::LeftButton) {
        const TimelineLayout now = parts();
        const TimelineTarget target(_document, now, event->pos());
        if (target.part() == TimelineTarget::Part::name) {
            setCurrentLayer(target.layer());
        } else {
            _gesture.press(target, now, event->pos(), event->modifiers());
        }
    } else if (event->button() == Qt::RightButton) { // What a menu then offers is about the keys that it met.
        const TimelineTarget target(_document, parts(), event->pos());
        const auto keys = target.isKey() ? target.keys(_document) : KeySelection::Keys();
        if (!_document.selection().keys().contains(keys)) {
            _document.selection().set(keys);
        }
    }
}

void TimelineView::mouseMoveEvent(QMouseEvent* event) {
    if (_panned && !event->buttons().testFlag(Qt::MiddleButton)) {
        _panned.reset();
    }
    if (_gesture.isActive() && !event->buttons().testFlag(Qt::LeftButton)) {
        _repaintBand(); // It is gone then.
        _gesture.end();
    }
    if (_panned) {
        _panTo(event->pos());
        return;
    }
    if (_gesture.isActive()) {
        _gesture.move(parts(), event->pos());
        _repaintBand();
    }
    if (!_gesture.isActive() || _gesture.movesMarker()) {
        _hover(event->pos());
    }
}

void TimelineView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton) {
        _panned.reset();
    } else if (event->button() == Qt::LeftButton && _gesture.isActive()) {
        _repaintBand(); // It is gone then.
        _gesture.release(parts(), event->pos());
    }
}

// The second of two quick presses is one like the first; the base class would ignore it.
void TimelineView::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void TimelineView::_repaintBand() {
    if (_gesture.spansBand()) {
        viewport()->update();
    }
}

void TimelineView::_panTo(const QPoint& point) {
    const TimelineLayout now = parts();
    _frames.pan(now.frameAt(_panned->x()) - now.frameAt(point.x()));
    verticalScrollBar()->setValue(verticalScrollBar()->value() + _panned->y() - point.y());
    _panned = point;
}

void TimelineView::_hover(const QPoint& point) {
    const TimelineTarget target(_document, parts(), point);
    viewport()->setCursor(cursorOf(target.part()));
    _announce(target.description(_document));
}

void TimelineView::_announce(const QString& text) {
    if (text != _announced) {
        _announced = text;
        Q_EMIT hovered(text);
    }
}

bool TimelineView::focusNextPrevChild(bool next) {
    // Escape shall find the gesture.
    return isGestureActive() || QAbstractScrollArea::focusNextPrevChild(next);
}

void TimelineView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && _gesture.cancel()) {
        viewport()->update();
    } else if (event->key() == Qt::Key_Escape && _panned) {
        _panned.reset();
        _frames.show(_beforePan.first, _beforePan.last);
        verticalScrollBar()->setValue(_beforePan.row);
    } else if (isGestureActive() || !_keyboard.press(*event)) {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void TimelineView::goToStart() {
    _navigator.goTo(_document.markers().startIndex());
}

void TimelineView::goToEnd() {
    _navigator.goTo(_document.markers().endIndex());
}

void TimelineView::goToNextKey() {
    _navigator.goToNextKey(currentLayer());
}

void TimelineView::goToPreviousKey() {
    _navigator.goToPreviousKey(currentLayer());
}

} // namespace Editor
