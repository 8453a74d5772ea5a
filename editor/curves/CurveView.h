#pragma once

#include "curves/CurveKeyboard.h"
#include "curves/CurvePlacement.h"
#include "curves/ViewPicture.h"

#include <QPointer>
#include <QWidget>

namespace ZT {
class EditableAnimationLayer;
}

namespace Editor {

class CurveMouse;
class Document;
class Drag;
class ViewAxis;

/// The curves of all visible layers with their keys and handles, to be looked at and edited.
///
/// **Mouse.** The wheel zooms at the pointer, with Ctrl frames and with Shift values only; the middle button,
/// or Space and the left one, pans. A click selects a key, with Shift it adds or takes away; on empty ground
/// it deselects, and a drag there spans a rubber band, which adds with Shift. Keys and handles follow the
/// pointer, with Shift along one axis; with Ctrl the handles of all selected keys become like the one that is
/// dragged. A double click on a curve inserts a key. In the ruler the selected frame follows the pointer.
///
/// **Keyboard.** Tab and Shift+Tab step through the current layer's keys and leave the view behind the last
/// one, Ctrl+Tab leaves it at once. Arrows move the selected keys, with Shift ten times as far. Escape
/// takes the gesture under way back, else it deselects.
///
/// It asks for no context menu itself: see QWidget::customContextMenuRequested(). Locked layers are shown
/// paler.
class CurveView : public QWidget {
    Q_OBJECT

public:
    /// All of them must outlive the view.
    CurveView(Document& document, Drag& drag, ViewAxis& frames, QWidget* parent = nullptr);
    ~CurveView() override;

    /// The visible part of the values; the view owns it.
    ViewAxis& values() noexcept { return *_values; }
    /// Where things lie now.
    CurvePlacement placement() const;

    /// Whether a button is held that moves, selects or scrolls something.
    bool isGestureActive() const;

    /// The layer that is emphasised and drawn last, whose keys are preferred under the pointer and which Tab
    /// walks. Keeps the layer, not its place in the list. An index without layer means none.
    void setCurrentLayer(int index);
    /// -1 for none.
    int currentLayer() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Shows all keys of the visible layers; without any, what lies between start and end marker.
    void fitAll();
    /// Shows the selected keys; without any, as fitAll().
    void fitSelection();

Q_SIGNALS:
    /// Layer, frame and value under the pointer, for people to read; empty when the pointer leaves the plot.
    void hovered(const QString& text);
    /// A key or curve of a layer that was not the current one was clicked; it is the current one now.
    void currentLayerPicked(int index);

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void _start();
    void _repaint();
    void _moveCurrentFrame(unsigned int frame);
    void _pick(int layer);
    void _hover(const QPointF& point);
    QString _hoverText(const QPointF& point);

    Document& _document;
    ViewAxis& _frames;
    ViewAxis* _values;  ///< a child
    CurveMouse* _mouse; ///< a child
    CurveKeyboard _keyboard;
    QPointer<ZT::EditableAnimationLayer> _currentLayer;
    ViewPicture _picture;           ///< of all but the current frame and the focus
    unsigned int _currentFrame = 0; ///< as painted
    bool _isSpaceDown = false;
};

} // namespace Editor
