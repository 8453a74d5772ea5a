#include "curves/CurvePlacement.h"

#include "curves/ViewAxis.h"
#include "document/Frames.h"

#include <algorithm>
#include <cmath>

namespace Editor {

CurvePlacement::CurvePlacement(const ViewAxis& frames, const ViewAxis& values, const QRect& plot)
    : _plot(plot)
    , _firstFrame(frames.first())
    , _lastFrame(frames.last())
    , _lowestValue(values.first())
    , _highestValue(values.last())
    , _pixelsPerFrame(std::max(1, plot.width()) / frames.span())
    , _pixelsPerValue(std::max(1, plot.height()) / values.span()) {}

unsigned int CurvePlacement::nearestFrame(double x) const {
    return static_cast<unsigned int>(std::clamp(std::round(toFrame(x)), 0.0, double{lastPossibleFrame}));
}

} // namespace Editor
