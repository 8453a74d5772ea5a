#pragma once

#include "curves/ViewPicture.h"
#include "timeline/FrameNavigator.h"
#include "timeline/TimelineGesture.h"
#include "timeline/TimelineKeyboard.h"
#include "timeline/TimelineLayout.h"

#include <QAbstractScrollArea>
#include <QPoint>
#include <QPointer>
#include <QString>

#include <optional>

namespace ZT {
class EditableAnimationLayer;
}

namespace Editor {

class Document;
class Drag;
class TimelineKeyboard;
class ViewAxis;

/// Layers over time: a row of keys for each layer and one for all together, below a ruler with the current
/// frame, the markers of the span that plays, and a lane for the user range.
///
/// Keys are selected by click, by shift-click (one more or one less) and by rubber band, moved in time by
/// mouse and arrow keys; the range is made, moved and stretched in its lane. Each such gesture is one entry
/// of the history. Markers and the current frame move without a trace there.
class TimelineView : public QAbstractScrollArea {
    Q_OBJECT

public:
    static constexpr double zoomStep = 1.2; ///< by a notch of the wheel, as by a key

    /// All of them must outlive the view.
    TimelineView(Document& document, Drag& drag, ViewAxis& frames, QWidget* parent = nullptr);

    /// The layer whose keys the steps to the next and previous key visit; -1 for those of all that may be
    /// edited.
    int currentLayer() const;
    /// Where what is shown now, in pixels of the viewport.
    TimelineLayout parts() const;

    /// Whether a button is held that moves, selects or scrolls something.
    bool isGestureActive() const { return _gesture.isActive() || _panned; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// -1, or a layer that there is not: none. Emits currentLayerChanged() and shows its row.
    void setCurrentLayer(int index);
    /// These move the current frame, and the visible frames where it would be out of sight.
    void goToStart();
    void goToEnd();
    /// Stays where there is no further key.
    void goToNextKey();
    void goToPreviousKey();

Q_SIGNALS:
    /// What is under the pointer, for a status bar; empty where there is nothing to be said.
    void hovered(const QString& text);
    void currentLayerChanged(int index);

protected:
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Shown {
        double first = 0.0; ///< frame
        double last = 0.0;
        int row = 0; ///< of the scroll bar
    };

    void _observe();
    void _repaint();
    void _repaintBand();
    void _moveCurrentFrame(unsigned int frame);
    void _updateScrollBar();
    void _hover(const QPoint& point);
    void _announce(const QString& text);
    void _panTo(const QPoint& point);

    Document& _document;
    ViewAxis& _frames;
    FrameNavigator _navigator;
    TimelineKeyboard _keyboard;
    TimelineGesture _gesture;
    QPointer<ZT::EditableAnimationLayer> _currentLayer; ///< may be out of the animation for a while
    ViewPicture _picture;           ///< of all but lines of frames, the rubber band and the focus
    unsigned int _currentFrame = 0; ///< as painted
    std::optional<QPoint> _panned;  ///< where the pointer was when the view was last panned
    Shown _beforePan;
    QString _announced;
};

} // namespace Editor
