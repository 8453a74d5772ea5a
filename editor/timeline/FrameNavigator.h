#pragma once

#include <vector>

namespace ZT {
class EditableMotionCurve;
}

namespace Editor {

class Document;
class ViewAxis;

/// Moves the current frame, and the visible frames with it where it would be out of sight.
class FrameNavigator {
public:
    /// Both must outlive the navigator.
    FrameNavigator(Document& document, ViewAxis& frames);

    void goTo(unsigned int frame);
    /// By so many frames, or as many as there are.
    void step(double distance);
    /// To the next key of the layer, with -1 of all layers that may be edited. Stays where there is none.
    void goToNextKey(int layer);
    void goToPreviousKey(int layer);
    /// Makes the visible span @p factor times as large; the current frame stays where it is, if it is
    /// visible.
    void zoom(double factor);

    /// The curve of the layer, with -1 those of all layers that may be edited.
    std::vector<ZT::EditableMotionCurve*> curvesOf(int layer) const;

private:
    Document& _document;
    ViewAxis& _frames;
};

} // namespace Editor
