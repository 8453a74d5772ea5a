#pragma once

#include "document/KeySelection.h"

#include <limits>

namespace ZT {
class EditableMotionCurve;
}

namespace Editor {

class ViewAxis;

/// The frames and values that curves or keys reach, so that a view can show just those.
class CurveExtent {
public:
    /// All keys of the curve, and how far it swings out between keys with handles of their own. O(keys).
    void add(ZT::EditableMotionCurve& curve);
    void add(const KeySelection::Keys& keys);
    void add(double frame, double value);

    bool isEmpty() const noexcept { return _firstFrame > _lastFrame; }

    /// Has the axes show the extent with a little room around it. Does nothing when it is empty.
    void show(ViewAxis& frames, ViewAxis& values) const;

private:
    double _firstFrame = std::numeric_limits<double>::infinity();
    double _lastFrame = -std::numeric_limits<double>::infinity();
    double _lowestValue = std::numeric_limits<double>::infinity();
    double _highestValue = -std::numeric_limits<double>::infinity();
};

} // namespace Editor
