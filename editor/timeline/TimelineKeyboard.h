#pragma once

class QKeyEvent;

namespace Editor {

class Document;
class Drag;
class FrameNavigator;
class TimelineView;

/// What keys of the keyboard do in a timeline, but for those that are a command elsewhere.
class TimelineKeyboard {
public:
    /// All must outlive the keyboard, but may be half made.
    TimelineKeyboard(Document& document, Drag& drag, FrameNavigator& navigator, TimelineView& view);

    /// Left and Right move the selected keys by a frame, with Shift by ten, as one entry of the history;
    /// without selected keys, the current frame. Up and Down go to another layer. Return selects the keys at
    /// the current frame, of the current layer or of all, with Shift adds or takes them away. Escape
    /// deselects. False for other keys.
    bool press(const QKeyEvent& event);

private:
    void _step(double frames);
    void _stepLayer(int layers);
    void _selectAtCurrentFrame(bool isToggling);

    Document& _document;
    Drag& _drag;
    FrameNavigator& _navigator;
    TimelineView& _view;
};

} // namespace Editor
