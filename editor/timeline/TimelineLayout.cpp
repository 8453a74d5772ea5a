#include "timeline/TimelineLayout.h"

#include "curves/ViewAxis.h"
#include "document/Frames.h"

#include <cmath>

namespace Editor {

namespace {

constexpr double lastFrame = lastPossibleFrame;

// Positions beyond all frames become the first and the last one.
unsigned int toFrame(double position) {
    return static_cast<unsigned int>(std::clamp(position, 0.0, lastFrame));
}

} // namespace

TimelineLayout::TimelineLayout(const ViewAxis& frames, const QFontMetrics& font, const QSize& size,
                               int layerCount, int scrolled)
    : _frames(frames)
    , _size(size)
    , _layerCount(layerCount)
    , _scrolled(scrolled)
    , _columnWidth(std::min(20 * font.averageCharWidth(), size.width() / 3))
    , _rulerHeight(2 * font.height())
    , _laneHeight(font.height())
    , _rowHeight(font.height() + 4)
    , _handleSize(std::max(6, font.height() / 2)) {}

QRect TimelineLayout::startHandle(unsigned int frame) const {
    return {x(frame) - _handleSize, ruler().bottom() + 1 - _handleSize, _handleSize, _handleSize};
}

QRect TimelineLayout::endHandle(unsigned int frame) const {
    return {x(frame) + 1, ruler().bottom() + 1 - _handleSize, _handleSize, _handleSize};
}

QRect TimelineLayout::lineAt(unsigned int frame) const {
    const QRect line(x(frame) - 1, 0, 3, _size.height());
    return line & (ruler() | rows());
}

// Keys that stand close to each other become smaller, but never too small to be seen and met.
int TimelineLayout::keyRadius() const {
    const double apart = length() / _frames.span();
    const double largest = 0.35 * _rowHeight;
    return static_cast<int>(std::clamp(0.5 * apart, 0.6 * largest, largest));
}

int TimelineLayout::layerAt(int y) const {
    if (y < _rowsTop() || y >= _size.height()) {
        return -1;
    }
    const int layer = contentY(y) / _rowHeight;
    return layer < _layerCount ? layer : -1;
}

int TimelineLayout::firstLayer() const {
    return std::max(0, _scrolled / _rowHeight);
}

int TimelineLayout::lastLayer() const {
    if (rows().isEmpty()) {
        return firstLayer() - 1;
    }
    return std::min(_layerCount - 1, (_scrolled + rows().height() - 1) / _rowHeight);
}

int TimelineLayout::x(double frame) const {
    constexpr double farAway = 1e6;
    return _columnWidth + qRound(std::clamp(_frames.toPixel(frame, length()), -farAway, farAway));
}

double TimelineLayout::frameAt(double x) const {
    return _frames.fromPixel(x - _columnWidth, length());
}

unsigned int TimelineLayout::nearestFrame(double x) const {
    return toFrame(std::round(frameAt(x)));
}

TimelineLayout::Frames TimelineLayout::framesBetween(double left, double right) const {
    const double first = std::max(0.0, std::ceil(frameAt(left)));
    const double last = std::min(lastFrame, std::floor(frameAt(right)));
    return first <= last ? Frames{toFrame(first), toFrame(last)} : Frames();
}

double TimelineLayout::tickStep(int apart) const {
    return std::max(1.0, _frames.tickStep(length(), apart));
}

} // namespace Editor
