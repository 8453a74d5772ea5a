#pragma once

#include "curves/CurvePlacement.h"

#include <QPalette>

class QColor;
class QPainter;

namespace ZT {
class AnimationMarkers;
}

namespace Editor {

/// Draws the markers of an animation: what plays and the user range as ground, start, end and the selected
/// frame as lines with flags in the ruler.
class MarkerPainter {
public:
    MarkerPainter(QPainter& painter, const CurvePlacement& placement, const QPalette& palette,
                  const ZT::AnimationMarkers& markers);

    /// Frames that do not play are shaded, the user range is tinted.
    void paintGround();
    /// All but the selected frame.
    void paintLines();
    void paintCurrentFrame();

    /// The pixels that paintCurrentFrame() may touch for @p frame; empty where it is out of sight.
    static QRect reachOf(const CurvePlacement& placement, unsigned int frame);

private:
    void _shade(double firstFrame, double lastFrame, const QColor& colour);
    /// The flag points to the right or, with a negative @p direction, to the left; with 0 to both sides.
    void _paintLine(double frame, const QColor& colour, int direction);

    QPainter& _painter;
    CurvePlacement _placement;
    const QPalette& _palette;
    const ZT::AnimationMarkers& _markers;
};

} // namespace Editor
