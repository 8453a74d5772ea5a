#include "curves/CurveView.h"

#include "curves/CurveExtent.h"
#include "curves/CurveMouse.h"
#include "curves/CurveScene.h"
#include "curves/GridPainter.h"
#include "curves/HitTest.h"
#include "curves/MarkerPainter.h"
#include "curves/PointerPosition.h"
#include "curves/ViewAxis.h"
#include "document/Document.h"
#include "document/Drag.h"
#include "document/KeyEdits.h"
#include "model/AnimationMarkers.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>

#include <cmath>
#include <optional>
#include <utility>

namespace Editor {

namespace {

QString toText(double value) {
    return QString::number(value, 'g', 6);
}

QString toText(const ZT::EditableMotionCurveKey& key) {
    const ZT::EditableMotionCurve* const curve = key.getParentCurve();
    const ZT::EditableAnimationLayer* const layer = curve == nullptr ? nullptr : curve->getParentLayer();
    return layer == nullptr ? QString()
                            : CurveView::tr("%1: key at frame %2, value %3")
                                  .arg(layer->getActuatorName(), QString::number(ZT::index(&key)),
                                       toText(double{key.getValue()}));
}

} // namespace

CurveView::CurveView(Document& document, Drag& drag, ViewAxis& frames, QWidget* parent)
    : QWidget(parent)
    , _document(document)
    , _frames(frames)
    , _values(ViewAxis::forValues(this))
    , _mouse(new CurveMouse(document, drag, frames, *_values, *this))
    , _keyboard(document, drag, frames, *_values) {
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setMouseTracking(true);
    setAccessibleName(tr("Curves"));
    connect(&document, &Document::changed, this, &CurveView::_repaint);
    connect(&document, &Document::replaced, this, &CurveView::_start);
    connect(&document.selection(), &KeySelection::changed, this, &CurveView::_repaint);
    connect(&frames, &ViewAxis::changed, this, &CurveView::_repaint);
    connect(_values, &ViewAxis::changed, this, &CurveView::_repaint);
    connect(_mouse, &CurveMouse::layerPicked, this, &CurveView::_pick);
    _start();
}

CurveView::~CurveView() = default;

CurvePlacement CurveView::placement() const {
    return {_frames, *_values, rect().marginsRemoved(GridPainter::margins(fontMetrics()))};
}

void CurveView::setCurrentLayer(int index) {
    ZT::EditableAnimationLayer* const layer = _document.layer(index);
    if (layer != _currentLayer) {
        _currentLayer = layer;
        _repaint();
    }
}

int CurveView::currentLayer() const {
    return _document.indexOf(_currentLayer);
}

QSize CurveView::sizeHint() const {
    return {900, 500};
}

QSize CurveView::minimumSizeHint() const {
    const QMargins rulers = GridPainter::margins(fontMetrics());
    return {rulers.left() + 100, rulers.top() + 60};
}

void CurveView::fitAll() {
    CurveExtent extent;
    for (int i = 0; i < _document.layerCount(); ++i) {
        if (_document.look(i).isVisible) {
            extent.add(*_document.layer(i)->getCurve());
        }
    }
    if (extent.isEmpty()) {
        extent.add(_document.markers().startIndex(), 0.0);
        extent.add(_document.markers().endIndex(), 0.0);
    }
    extent.show(_frames, *_values);
}

void CurveView::fitSelection() {
    if (_document.selection().isEmpty()) {
        fitAll();
        return;
    }
    CurveExtent extent;
    extent.add(_document.selection().keys());
    extent.show(_frames, *_values);
}

bool CurveView::isGestureActive() const {
    return _mouse->isActive();
}

bool CurveView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        // Known before a shortcut of the window takes the key press.
        _isSpaceDown = _isSpaceDown || key.key() == Qt::Key_Space;
        if (_keyboard.wants(key) || (key.key() == Qt::Key_Escape && _mouse->isActive())) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

bool CurveView::focusNextPrevChild(bool next) {
    // Escape shall find the gesture.
    return isGestureActive() || _keyboard.step(currentLayer(), next) || QWidget::focusNextPrevChild(next);
}

void CurveView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const CurveScene scene(_document, placement(), palette(), currentLayer());
    _picture.paint(painter, *this, [&scene](QPainter& onto) { scene.paint(onto); });
    scene.paintCurrentFrame(painter);
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void CurveView::mousePressEvent(QMouseEvent* event) {
    _mouse->press(*event, placement(), currentLayer(), _isSpaceDown);
}

void CurveView::mouseMoveEvent(QMouseEvent* event) {
    _mouse->moveTo(*event, placement());
    _hover(positionOf(*event));
}

void CurveView::mouseReleaseEvent(QMouseEvent* event) {
    _mouse->release(*event, placement());
}

void CurveView::mouseDoubleClickEvent(QMouseEvent* event) {
    const CurvePlacement now = placement();
    const auto hit = HitTest(_document, now, currentLayer()).at(positionOf(*event));
    if (event->button() != Qt::LeftButton || _isSpaceDown || !hit || hit->part != Hit::Part::curve) {
        mousePressEvent(event);
        return;
    }
    ZT::EditableMotionCurve* const curve = _document.layer(hit->layer)->getCurve();
    if (_document.isEditable(curve)) {
        KeyEdits(_document).insert(*curve, now.nearestFrame(positionOf(*event).x()));
    }
}

void CurveView::leaveEvent(QEvent* event) {
    Q_EMIT hovered(QString());
    QWidget::leaveEvent(event);
}

void CurveView::wheelEvent(QWheelEvent* event) {
    const QPoint delta = event->angleDelta();
    const double turned = delta.y() != 0 ? delta.y() : delta.x(); // Some platforms turn it with a modifier.
    const double factor = std::pow(1.2, -turned / 120.0);
    const QPointF at = placement().toPosition(event->position());
    const bool isFrames = event->modifiers().testFlag(Qt::ControlModifier);
    const bool isValues = event->modifiers().testFlag(Qt::ShiftModifier);
    if (isFrames || !isValues) {
        _frames.zoom(factor, at.x());
    }
    if (isValues || !isFrames) {
        _values->zoom(factor, at.y());
    }
    event->accept();
}

void CurveView::keyPressEvent(QKeyEvent* event) {
    const bool isTab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
    if (event->key() == Qt::Key_Space) {
        _isSpaceDown = true;
    } else if (event->key() == Qt::Key_Escape && _mouse->cancel()) {
        return;
    } else if (isTab && event->modifiers().testFlag(Qt::ControlModifier) && !isGestureActive()) {
        QWidget::focusNextPrevChild(event->key() == Qt::Key_Tab);
    } else if (isGestureActive() || !_keyboard.press(*event)) {
        QWidget::keyPressEvent(event);
    }
}

void CurveView::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        _isSpaceDown = false;
    }
    QWidget::keyReleaseEvent(event);
}

void CurveView::focusOutEvent(QFocusEvent* event) {
    _isSpaceDown = false;
    QWidget::focusOutEvent(event);
}

void CurveView::hideEvent(QHideEvent* event) {
    _mouse->cancel();
    QWidget::hideEvent(event);
}

void CurveView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    _repaint(); // The colours or the font may be other ones.
}

void CurveView::_start() {
    _mouse->end(); // A frame that cancel() would give back is the last animation's.
    using Markers = ZT::AnimationMarkers;
    const Markers* const markers = &_document.markers();
    connect(markers, &Markers::selectedIndexChanged, this, &CurveView::_moveCurrentFrame);
    connect(markers, &Markers::startIndexChanged, this, &CurveView::_repaint);
    connect(markers, &Markers::endIndexChanged, this, &CurveView::_repaint);
    connect(markers, &Markers::rangeStartIndexChanged, this, &CurveView::_repaint);
    connect(markers, &Markers::rangeEndIndexChanged, this, &CurveView::_repaint);
    connect(markers, &Markers::rangeVisibilityChanged, this, &CurveView::_repaint);
    _currentFrame = markers->selectedIndex();
    setCurrentLayer(0);
    fitAll();
    _repaint();
}

void CurveView::_repaint() {
    _picture.spoil();
    update();
}

void CurveView::_moveCurrentFrame(unsigned int frame) {
    const CurvePlacement now = placement();
    update(MarkerPainter::reachOf(now, std::exchange(_currentFrame, frame)));
    update(MarkerPainter::reachOf(now, frame));
}

void CurveView::_pick(int layer) {
    if (layer != currentLayer()) {
        setCurrentLayer(layer);
        Q_EMIT currentLayerPicked(layer);
    }
}

// What is under the pointer is sought only where no gesture has it already.
void CurveView::_hover(const QPointF& point) {
    if (const ZT::EditableMotionCurveKey* const key = _mouse->draggedKey()) {
        Q_EMIT hovered(toText(*key));
    } else {
        Q_EMIT hovered(_hoverText(point));
    }
}

QString CurveView::_hoverText(const QPointF& point) {
    const CurvePlacement now = placement();
    const QString frame = QString::number(now.toFrame(point.x()), 'f', 1);
    std::optional<Hit> hit;
    if (!_mouse->isActive()) {
        hit = HitTest(_document, now, currentLayer()).at(point);
        setCursor(hit && hit->key != nullptr ? Qt::PointingHandCursor : Qt::ArrowCursor);
    }
    if (hit && hit->key != nullptr) {
        return toText(*hit->key);
    }
    if (const ZT::EditableAnimationLayer* const layer = hit ? _document.layer(hit->layer) : nullptr) {
        const auto value = double{layer->getCurve()->valueAt(now.toFrame(point.x()))};
        return tr("%1: frame %2, value %3").arg(layer->getActuatorName(), frame, toText(value));
    }
    return QRectF(now.plot()).contains(point)
               ? tr("Frame %1, value %2").arg(frame, toText(now.toValue(point.y())))
               : QString();
}

} // namespace Editor
