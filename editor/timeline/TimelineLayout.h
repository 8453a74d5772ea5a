#pragma once

#include <QFontMetrics>
#include <QRect>
#include <QSize>

#include <algorithm>

namespace Editor {

class ViewAxis;

/// Where a timeline shows what, in pixels of its viewport: names in a column at the left; from the top the
/// ruler, the lane of the user range and the summary row, then the rows of the layers, which scroll. Any size
/// will do, also none.
class TimelineLayout {
public:
    /// @p scrolled: how many pixels of the rows are above the visible part. @p frames must outlive the
    /// layout.
    TimelineLayout(const ViewAxis& frames, const QFontMetrics& font, const QSize& size, int layerCount,
                   int scrolled);

    /// The parts that show frames.
    QRect ruler() const { return _part(0, _rulerHeight); }
    QRect lane() const { return _part(_rulerHeight, _laneHeight); }
    QRect summary() const { return _part(_rulerHeight + _laneHeight, _rowHeight); }
    QRect rows() const { return _part(_rowsTop(), std::max(0, _size.height() - _rowsTop())); }
    /// A layer's row, also where it is scrolled out of sight.
    QRect row(int layer) const { return _part(_rowsTop() + layer * _rowHeight - _scrolled, _rowHeight); }
    /// The part of the names' column beside one of those.
    QRect nameBeside(const QRect& part) const { return {0, part.y(), _columnWidth, part.height()}; }

    /// In the ruler: the handle of the start marker lies left of its frame, that of the end marker right of
    /// it, so that both can be grabbed where they meet.
    QRect startHandle(unsigned int frame) const;
    QRect endHandle(unsigned int frame) const;

    /// What the line of a frame covers, from the ruler through all rows; empty where it is out of sight.
    QRect lineAt(unsigned int frame) const;

    int columnWidth() const noexcept { return _columnWidth; }
    int rowHeight() const noexcept { return _rowHeight; }
    /// The height that all rows would need.
    int rowsHeight() const noexcept { return _layerCount * _rowHeight; }
    /// Half of a key's diamond.
    int keyRadius() const;
    /// Half of the text's height: how large other handles are.
    int handleSize() const noexcept { return _handleSize; }

    /// The layer whose row is at @p y; -1 where there is none, and above the rows.
    int layerAt(int y) const;
    /// The first and the last visible layer; the last one is before the first where none is visible.
    int firstLayer() const;
    int lastLayer() const;

    /// The pixel of a frame, kept to where painting can count.
    int x(double frame) const;
    double frameAt(double x) const;
    /// The frame next to a pixel.
    unsigned int nearestFrame(double x) const;
    /// The frames from one pixel to another; the first one is behind the last where there are none.
    struct Frames {
        unsigned int first = 1;
        unsigned int last = 0;
    };
    Frames framesBetween(double left, double right) const;

    /// How many frames apart ticks are that are at least so many pixels apart: a whole number.
    double tickStep(int apart) const;

    /// The y of a pixel in the rows as if nothing were scrolled, and back.
    int contentY(int y) const { return y - _rowsTop() + _scrolled; }
    int viewY(int contentY) const { return contentY + _rowsTop() - _scrolled; }

    const ViewAxis& frames() const noexcept { return _frames; }
    /// The pixels that the axis of the frames has; at least one.
    int length() const { return std::max(1, _size.width() - _columnWidth); }

private:
    QRect _part(int y, int height) const {
        return {_columnWidth, y, std::max(0, _size.width() - _columnWidth), height};
    }
    int _rowsTop() const { return _rulerHeight + _laneHeight + _rowHeight; }

    const ViewAxis& _frames;
    QSize _size;
    int _layerCount;
    int _scrolled;
    int _columnWidth;
    int _rulerHeight;
    int _laneHeight;
    int _rowHeight;
    int _handleSize;
};

} // namespace Editor
