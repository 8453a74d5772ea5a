#pragma once

#include "base/TangentSide.h"
#include "curves/CurvePlacement.h"

#include <QObject>
#include <QPointF>
#include <QPointer>

class QMouseEvent;
class QRubberBand;
class QWidget;

namespace ZT {
class EditableMotionCurveKey;
}

namespace Editor {

class Document;
class Drag;
struct Hit;
class ViewAxis;

/// The gestures of the mouse over a curve view, from press to release: panning, moving the selected frame
/// along the ruler, the rubber band, dragging keys and handles. One at a time; other buttons pressed
/// meanwhile are ignored. A gesture ends with its drag, whoever ends that, and with the first move without
/// its button; what it has done stays then.
class CurveMouse : public QObject {
    Q_OBJECT

public:
    /// @p view owns this object and the rubber band on it.
    CurveMouse(Document& document, Drag& drag, ViewAxis& frames, ViewAxis& values, QWidget& view);

    bool isActive() const noexcept { return _gesture != Gesture::none; }
    /// The key that follows the pointer, or whose handle does; null where there is none.
    const ZT::EditableMotionCurveKey* draggedKey() const;

    /// @p placement is that of the moment, here and below. With @p isPanning any button but the right one
    /// pans.
    void press(const QMouseEvent& event, const CurvePlacement& placement, int currentLayer, bool isPanning);
    void moveTo(const QMouseEvent& event, const CurvePlacement& placement);
    /// The end of the gesture, if it is the button that began it.
    void release(const QMouseEvent& event, const CurvePlacement& placement);
    /// Takes a drag back, gives the selected frame or the place of the view back and puts the rubber band
    /// away. False when no gesture was under way.
    bool cancel();
    /// The button was released where nobody saw it, as a dialog takes it, or the animation is another one:
    /// what was done so far stays.
    void end();

Q_SIGNALS:
    /// A key, handle or curve of the layer was pressed.
    void layerPicked(int index);

private:
    enum class Gesture : int { none, pan, scrub, band, keys, handle };
    struct Shown {
        double first = 0.0;
        double last = 0.0;
    };

    bool _isDragging() const noexcept;
    void _follow(const QMouseEvent& event, const CurvePlacement& placement);
    void _pressLeft(const QMouseEvent& event, const CurvePlacement& placement, int currentLayer);
    void _grabKey(ZT::EditableMotionCurveKey* key, bool isAdding);
    void _grabHandle(const Hit& hit, bool ofAllSelected);
    void _dragTo(const QMouseEvent& event, const CurvePlacement& placement);
    void _scrubTo(const QPointF& point, const CurvePlacement& placement);
    void _selectBand(const CurvePlacement& placement, bool isAdding);
    void _clickKey(bool isToggling);
    QPointF _startPoint(const CurvePlacement& placement) const;

    Document& _document;
    Drag& _drag;
    ViewAxis& _frames;
    ViewAxis& _values;
    QRubberBand* _band; ///< a child of the view
    Gesture _gesture = Gesture::none;
    Qt::MouseButton _button = Qt::NoButton;
    QPointF _start; ///< where the button went down: frame and value, so that it holds when the view moves
    bool _hasMoved = false; ///< further than a hand shakes in a click
    bool _wasSelected = false;
    unsigned int _frameBefore = 0; ///< the selected one when the button went down in the ruler
    /// What was shown when a pan began.
    ///@{
    Shown _framesBefore;
    Shown _valuesBefore;
    ///@}
    QPointer<ZT::EditableMotionCurveKey> _key; ///< the one pressed
};

} // namespace Editor
