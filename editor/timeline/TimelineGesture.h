#pragma once

#include "timeline/TimelineLayout.h"
#include "timeline/TimelineTarget.h"

#include <QPoint>
#include <QRect>

#include <memory>

namespace Editor {

class Document;
class Drag;
class DragKind;

/// What the left mouse button does in a timeline from press to release: moves markers and the current frame
/// at once, selects keys by click and by rubber band, and hands keys and the range to the drag as soon as the
/// pointer has left its place.
class TimelineGesture {
public:
    TimelineGesture(Document& document, Drag& drag);

    void press(const TimelineTarget& target, const TimelineLayout& layout, const QPoint& point,
               Qt::KeyboardModifiers modifiers);
    void move(const TimelineLayout& layout, const QPoint& point);
    void release(const TimelineLayout& layout, const QPoint& point);
    /// Gives back what was there when the button was pressed. Returns false where no gesture is under way.
    bool cancel();
    /// The button was released where nobody saw it, or the animation is another one: what the gesture has
    /// done so far stays. Finishes its drag.
    void end();
    /// The gesture is over where the drag was its own.
    void dragEnded() noexcept { _kind = _kind == Kind::dragging ? Kind::none : _kind; }

    bool isActive() const noexcept { return _kind != Kind::none; }
    /// Whether a marker or the current frame follows the pointer.
    bool movesMarker() const noexcept;
    bool spansBand() const noexcept { return _kind == Kind::band; }
    /// The rubber band; empty where there is none.
    QRect band(const TimelineLayout& layout) const;

private:
    enum class Kind { none, currentFrame, startMarker, endMarker, waiting, dragging, band };

    void _pressKey(bool isToggling);
    void _grabMarker(Kind kind, unsigned int frame, const TimelineLayout& layout);
    void _setMarker(unsigned int frame);
    void _beginDrag();
    std::unique_ptr<DragKind> _dragKind() const;
    void _selectBand(const TimelineLayout& layout);

    Document& _document;
    Drag& _drag;
    Kind _kind = Kind::none;
    TimelineTarget _target; ///< what was pressed
    QPoint _pressed;
    double _pressedFrame = 0.0;
    int _pressedY = 0; ///< in the rows as if nothing were scrolled
    QPoint _point;     ///< where the pointer is
    bool _isToggling = false;
    bool _isOnSummary = false;
    unsigned int _before = 0; ///< the marker's frame
    int _grip = 0;            ///< from the pointer to the marker
};

} // namespace Editor
