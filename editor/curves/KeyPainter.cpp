#include "curves/KeyPainter.h"

#include "curves/PixelLines.h"
#include "document/KeySelection.h"

#include <QPainter>
#include <QVector>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Editor {

using VQ::Math::Interpolation::InterpolationType;

namespace {

constexpr double roomForKeys = 6.0; // pixels between neighbours

// Of an odd side, since the middle is a pixel.
QRect squareAround(const QPoint& centre, int halfSide) {
    return {centre.x() - halfSide, centre.y() - halfSide, 2 * halfSide + 1, 2 * halfSide + 1};
}

} // namespace

struct KeyPainter::Marks {
    QVector<QRect> plain;
    QVector<QRect> selected;
    std::vector<PlacedKey> withHandles;
};

KeyPainter::KeyPainter(QPainter& painter, const CurvePlacement& placement, const KeySelection& selection,
                       const QPalette& palette)
    : _painter(painter)
    , _placement(placement)
    , _bounds(QRectF(placement.plot()).adjusted(-8.0, -8.0, 8.0, 8.0))
    , _selection(selection)
    , _palette(palette) {}

void KeyPainter::paint(const std::vector<PlacedKey>& keys, const QColor& colour, bool isCurrent) {
    Marks marks;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        double frames = std::numeric_limits<double>::infinity();
        if (i > 0) {
            frames = keys[i].frame - keys[i - 1].frame;
        }
        if (i + 1 < keys.size()) {
            frames = std::min<double>(frames, keys[i + 1].frame - keys[i].frame);
        }
        _add(keys[i], frames * _placement.pixelsPerFrame(), isCurrent, marks);
    }

    _painter.setRenderHint(QPainter::Antialiasing, true);
    for (const PlacedKey& placed : marks.withHandles) {
        _paintHandle(placed, ZT::TangentSide::left, colour);
        _paintHandle(placed, ZT::TangentSide::right, colour);
    }
    _painter.setRenderHint(QPainter::Antialiasing, false);
    _painter.setPen(Qt::NoPen);
    _painter.setBrush(colour);
    _painter.drawRects(marks.plain);
    _painter.drawRects(marks.selected);
    _painter.setBrush(_palette.color(QPalette::Text));
    for (QRect& mark : marks.selected) {
        mark.adjust(1, 1, -1, -1);
    }
    _painter.drawRects(marks.selected);
}

void KeyPainter::_add(const PlacedKey& placed, double room, bool isCurrent, Marks& marks) {
    const bool isSelected = !_selection.isEmpty() && _selection.contains(placed.key);
    if (!isSelected && room < roomForKeys) {
        return;
    }
    const QPointF centre = _placement.toPoint(placed.frame, double{placed.key->getValue()});
    if (!std::isfinite(centre.y())) {
        return;
    }
    if (isSelected && room >= roomForHandles) {
        marks.withHandles.push_back(placed);
    }
    if (_bounds.contains(centre)) { // Where pixels are small integers.
        const QPoint pixel(static_cast<int>(std::floor(centre.x())),
                           static_cast<int>(std::floor(centre.y())));
        const int halfSide = room < roomForKeys ? 1 : isCurrent ? 3 : 2;
        const QRect mark = squareAround(pixel, isSelected ? halfSide + 1 : halfSide);
        QVector<QRect>& others = isSelected ? marks.selected : marks.plain;
        if (others.isEmpty() || others.last() != mark) { // Dense keys fall on one pixel.
            others.append(mark);
        }
    }
}

void KeyPainter::_paintHandle(const PlacedKey& placed, ZT::TangentSide side, const QColor& colour) {
    const auto end = handleEnd(_placement, placed, side);
    if (!end) {
        return;
    }
    const bool isFree = placed.key->getTangentType(side) == InterpolationType::bezier;
    QPointF from = _placement.toPoint(placed.frame, double{placed.key->getValue()});
    QPointF to = *end;
    if (clipLine(from, to, _bounds)) {
        _painter.setPen(isFree ? QPen(_palette.color(QPalette::Text)) : QPen(colour, 1.0, Qt::DotLine));
        _painter.drawLine(from, to);
    }
    if (isFree && _bounds.contains(*end)) {
        _painter.setBrush(_palette.color(QPalette::Base));
        _painter.drawEllipse(*end, 3.5, 3.5);
    }
}

} // namespace Editor
