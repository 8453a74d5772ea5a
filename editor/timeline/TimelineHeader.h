#pragma once

#include "timeline/TimelineLayout.h"
#include "timeline/TimelinePalette.h"

#include <QPainter>

namespace ZT {
class AnimationMarkers;
}

namespace Editor {

/// Paints what a timeline shows of frames: ruler, markers, current frame and user range, the lines of which
/// go through all rows. Lives for one paint.
class TimelineHeader {
public:
    TimelineHeader(const ZT::AnimationMarkers& markers, const TimelineLayout& layout,
                   const TimelinePalette& palette);

    /// Also what lies between the grounds and the keys of the rows: the range, and what does not play.
    void paintGrounds(QPainter& painter) const;
    void paintLines(QPainter& painter) const;

private:
    void _paintOutside(QPainter& painter) const;
    void _paintRange(QPainter& painter) const;
    void _paintTicks(QPainter& painter, const QRect& without) const;
    void _paintHandles(QPainter& painter) const;
    void _paintCurrentFrame(QPainter& painter, const QRect& box) const;
    QRect _currentFrameBox(const QFontMetrics& font) const;

    const ZT::AnimationMarkers& _markers;
    const TimelineLayout& _layout;
    const TimelinePalette& _palette;
};

} // namespace Editor
