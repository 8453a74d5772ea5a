#include "timeline/TimelineHeader.h"

#include "curves/ReadableColour.h"
#include "curves/ViewAxis.h"
#include "document/Translation.h"
#include "model/AnimationMarkers.h"
#include "timeline/ElidedText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Editor {

TimelineHeader::TimelineHeader(const ZT::AnimationMarkers& markers, const TimelineLayout& layout,
                               const TimelinePalette& palette)
    : _markers(markers)
    , _layout(layout)
    , _palette(palette) {}

void TimelineHeader::paintGrounds(QPainter& painter) const {
    for (const QRect& part : {_layout.ruler(), _layout.lane()}) {
        painter.fillRect(part | _layout.nameBeside(part), _palette.header);
        painter.fillRect(QRect(0, part.bottom(), part.right() + 1, 1), _palette.line);
    }
    drawElided(painter, _layout.nameBeside(_layout.ruler()), tr("Frame"), _palette.fadedText);
    drawElided(painter, _layout.nameBeside(_layout.lane()), tr("Range"), _palette.fadedText);
    if (!_markers.isRangeVisible()) {
        // Beside the line of a current frame at the beginning.
        const QRect lane = _layout.lane();
        drawElided(painter, lane.adjusted(2 * lane.height(), 0, 0, 0), tr("Drag here to make a range"),
                   _palette.fadedText);
    }
    painter.save();
    painter.setClipRect(_layout.ruler() | _layout.rows());
    _paintOutside(painter);
    _paintRange(painter);
    painter.restore();
}

void TimelineHeader::paintLines(QPainter& painter) const {
    painter.save();
    painter.setClipRect(_layout.ruler() | _layout.rows());
    const QRect box = _currentFrameBox(painter.fontMetrics());
    _paintTicks(painter, box);
    _paintHandles(painter);
    _paintCurrentFrame(painter, box);
    painter.restore();
    painter.fillRect(QRect(_layout.columnWidth() - 1, 0, 1, _layout.rows().bottom() + 1), _palette.line);
}

void TimelineHeader::_paintOutside(QPainter& painter) const {
    const QRect all = _layout.ruler() | _layout.rows();
    const int start = _layout.x(_markers.startIndex());
    const int end = _layout.x(_markers.endIndex());
    if (start > all.left()) {
        painter.fillRect(QRect(all.topLeft(), QPoint(start - 1, all.bottom())), _palette.outside);
    }
    if (end < all.right()) {
        painter.fillRect(QRect(QPoint(end + 1, all.top()), all.bottomRight()), _palette.outside);
    }
}

void TimelineHeader::_paintRange(QPainter& painter) const {
    if (!_markers.isRangeVisible()) {
        return;
    }
    const QRect lane = _layout.lane();
    const int start = _layout.x(_markers.rangeStartIndex());
    const int end = _layout.x(_markers.rangeEndIndex());
    const QRect band(QPoint(start, lane.top() + 1), QPoint(end, lane.bottom() - 1));
    painter.fillRect(band, mixed(_palette.header, _palette.selection, 0.6));
    painter.fillRect(QRect(QPoint(start, lane.bottom() + 1), QPoint(end, _layout.rows().bottom())),
                     _palette.range);
    const int width = _layout.handleSize() / 2;
    painter.fillRect(QRect(start - width, band.top(), width + 1, band.height()), _palette.selection);
    painter.fillRect(QRect(end, band.top(), width + 1, band.height()), _palette.selection);
}

void TimelineHeader::_paintTicks(QPainter& painter, const QRect& without) const {
    const QRect ruler = _layout.ruler();
    const QFontMetrics font = painter.fontMetrics();
    const std::uint64_t last = _layout.nearestFrame(ruler.right());
    const auto forTicks = [&](double step, const auto& draw) {
        const double first = std::ceil(std::max(0.0, _layout.frames().first()) / step);
        const auto apart = static_cast<std::uint64_t>(step);
        for (auto frame = static_cast<std::uint64_t>(first) * apart; frame <= last; frame += apart) {
            draw(_layout.x(static_cast<double>(frame)), frame);
        }
    };
    painter.setPen(_palette.line);
    forTicks(_layout.tickStep(6), [&](int x, std::uint64_t /*frame*/) {
        painter.drawLine(x, ruler.bottom() - 3, x, ruler.bottom());
    });
    const int labelWidth = font.horizontalAdvance(QString::number(last)) + font.averageCharWidth();
    painter.setPen(_palette.fadedText);
    forTicks(_layout.tickStep(2 * labelWidth), [&](int x, std::uint64_t frame) {
        painter.drawLine(x, ruler.center().y(), x, ruler.bottom());
        const QRect label(x + 1, ruler.top(), labelWidth, ruler.height() / 2);
        if (ruler.contains(label) && !label.intersects(without)) {
            painter.drawText(label, Qt::AlignCenter, QString::number(frame));
        }
    });
}

void TimelineHeader::_paintHandles(QPainter& painter) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(_palette.text);
    const QRectF start = _layout.startHandle(_markers.startIndex());
    const QRectF end = _layout.endHandle(_markers.endIndex());
    painter.drawPolygon(QPolygonF{{start.topRight(), start.bottomRight(), start.bottomLeft()}});
    painter.drawPolygon(QPolygonF{{end.topLeft(), end.bottomLeft(), end.bottomRight()}});
    painter.restore();
    const int bottom = _layout.rows().bottom();
    painter.setPen(_palette.fadedText);
    for (const unsigned int frame : {_markers.startIndex(), _markers.endIndex()}) {
        const int x = _layout.x(frame);
        painter.drawLine(x, _layout.ruler().center().y(), x, bottom);
    }
}

QRect TimelineHeader::_currentFrameBox(const QFontMetrics& font) const {
    const QString number = QString::number(_markers.selectedIndex());
    const int width = font.horizontalAdvance(number) + font.averageCharWidth() * 2;
    return {_layout.x(_markers.selectedIndex()) - width / 2, _layout.ruler().top(), width, font.height()};
}

void TimelineHeader::_paintCurrentFrame(QPainter& painter, const QRect& box) const {
    const int x = _layout.x(_markers.selectedIndex());
    painter.fillRect(QRect(x - 1, box.bottom(), 2, _layout.rows().bottom() - box.bottom() + 1),
                     _palette.currentFrame);
    painter.fillRect(box, _palette.currentFrame);
    painter.setPen(_palette.ground);
    painter.drawText(box, Qt::AlignCenter, QString::number(_markers.selectedIndex()));
}

} // namespace Editor
