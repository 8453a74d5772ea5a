#pragma once

#include <QPointF>

class QKeyEvent;

namespace ZT {
class EditableMotionCurveKey;
}

namespace Editor {

class Document;
class Drag;
class ViewAxis;

/// What keys of the keyboard do in a curve view, but for those that are a command elsewhere.
class CurveKeyboard {
public:
    CurveKeyboard(Document& document, Drag& drag, ViewAxis& frames, ViewAxis& values);

    /// Whether press() would do something: then no shortcut of the window should.
    bool wants(const QKeyEvent& event) const;
    /// Arrows move the selected keys by a frame or a hundredth of the visible values, with Shift ten times as
    /// far, as one entry of the history; Escape deselects them. False for other keys and without selection.
    bool press(const QKeyEvent& event);

    /// Selects the next key of the layer, or the previous one, and brings it into view. False where there is
    /// none or the layer cannot be edited.
    bool step(int layer, bool isForward);

private:
    QPointF _nudgeOf(const QKeyEvent& event) const;
    ZT::EditableMotionCurveKey* _nextKey(int layer, bool isForward) const;

    Document& _document;
    Drag& _drag;
    ViewAxis& _frames;
    ViewAxis& _values;
};

} // namespace Editor
