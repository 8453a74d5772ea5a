#include "curves/CurvePainter.h"

#include "base/animation/CurveEvaluation.h"
#include "curves/PixelLines.h"

#include <algorithm>
#include <cmath>

namespace Editor {

using VQ::Math::Position2D;
using VQ::Math::Interpolation::InterpolationType;

namespace {

constexpr double flatness = 0.5;  // pixels
constexpr double piece = 8.0;     // pixels between evaluations, where a curve hardly bends
constexpr double narrowest = 0.5; // where it bends sharply

double valueOf(const PlacedKey& placed) {
    return double{placed.key->getValue()};
}

} // namespace

struct CurvePainter::Segment {
    unsigned int leftFrame;
    Key left;
    unsigned int rightFrame;
    Key right;
};

// A margin keeps the ends of lines that leave the plot out of sight.
CurvePainter::CurvePainter(QPainter& painter, const CurvePlacement& placement)
    : _placement(placement)
    , _line(painter, QRectF(placement.plot()).adjusted(-4.0, -4.0, 4.0, 4.0)) {}

void CurvePainter::paint(const std::vector<PlacedKey>& keys) {
    if (keys.empty()) {
        return;
    }
    const QRectF plot(_placement.plot());
    // Only a curve's own first key has nothing before it on the plot, and only its last one nothing behind.
    if (_placement.toX(keys.front().frame) > plot.left()) {
        _add({plot.left() - 2.0, _placement.toY(valueOf(keys.front()))});
    }
    const auto columnOf = [this](const PlacedKey& placed) {
        return std::floor(_placement.toX(placed.frame));
    };
    for (auto begin = keys.begin(); begin != keys.end();) {
        const auto end =
            std::find_if(std::next(begin), keys.end(), [&, column = columnOf(*begin)](const auto& placed) {
                return columnOf(placed) != column;
            });
        _addColumn(begin, end);
        if (end != keys.end()) {
            _addSegment(*std::prev(end), *end);
        }
        begin = end;
    }
    if (_placement.toX(keys.back().frame) < plot.right()) {
        _add({plot.right() + 2.0, _placement.toY(valueOf(keys.back()))});
    }
    _line.lift();
}

void CurvePainter::_addColumn(std::vector<PlacedKey>::const_iterator begin,
                              std::vector<PlacedKey>::const_iterator end) {
    _add(_placement.toPoint(begin->frame, valueOf(*begin)));
    if (std::next(begin) == end) {
        return;
    }
    bool isAny = false;
    double least = 0.0;
    double greatest = 0.0;
    for (auto placed = begin; placed != end; ++placed) {
        const double value = valueOf(*placed);
        if (std::isfinite(value)) {
            least = isAny ? std::min(least, value) : value;
            greatest = isAny ? std::max(greatest, value) : value;
            isAny = true;
        }
    }
    if (isAny) {
        _add(_placement.toPoint(begin->frame, least));
        _add(_placement.toPoint(begin->frame, greatest));
    }
    const auto last = std::prev(end);
    _add(_placement.toPoint(last->frame, valueOf(*last)));
}

void CurvePainter::_addSegment(const PlacedKey& left, const PlacedKey& right) {
    const Segment segment{left.frame, left.key->baseMotionCurveKey(), right.frame,
                          right.key->baseMotionCurveKey()};
    const InterpolationType leaving = segment.left.rightTangentType;
    const InterpolationType arriving = segment.right.leftTangentType;
    if (leaving == InterpolationType::constant || arriving == InterpolationType::constant) {
        _add(_placement.toPoint(right.frame, valueOf(left)));
    } else if (!std::isfinite(segment.left.value) || !std::isfinite(segment.right.value)) {
        _line.lift();
    } else if ((leaving != InterpolationType::linear || arriving != InterpolationType::linear) &&
               !_isFlat(segment)) {
        _addCubic(segment);
    }
}

// A cubic lies in the hull of its keys and the ends of its handles. The evaluation may shorten a handle,
// which brings its end nearer to the line between the keys; one that points out of the segment it sets
// upright.
bool CurvePainter::_isFlat(const Segment& segment) const {
    const QPointF begin = _placement.toPoint(segment.leftFrame, double{segment.left.value});
    const QPointF end = _placement.toPoint(segment.rightFrame, double{segment.right.value});
    const auto isNear = [&](const QPointF& key, InterpolationType type, double frames, double values) {
        if (type == InterpolationType::linear || !std::isfinite(frames) || !std::isfinite(values)) {
            return true;
        }
        const QPointF handle(frames * _placement.pixelsPerFrame(), -values * _placement.pixelsPerValue());
        return distanceToLine(key + handle, begin, end) <= flatness;
    };
    const Position2D& leaving = segment.left.rightTangentOffset;
    const Position2D& arriving = segment.right.leftTangentOffset;
    return isNear(begin, segment.left.rightTangentType, std::max(0.0, double{leaving.x}),
                  double{leaving.y}) &&
           isNear(end, segment.right.leftTangentType, std::min(0.0, double{arriving.x}), double{arriving.y});
}

void CurvePainter::_addCubic(const Segment& segment) {
    const QRectF plot(_placement.plot());
    const double first = std::max(_placement.toX(segment.leftFrame), plot.left());
    const double last = std::min(_placement.toX(segment.rightFrame), plot.right());
    if (!(first < last)) {
        return;
    }
    const int pieces = static_cast<int>(std::ceil((last - first) / piece));
    QPointF from = _pointAt(segment, first);
    _add(from);
    for (int i = 1; i <= pieces; ++i) {
        const QPointF to = _pointAt(segment, first + (last - first) * i / pieces);
        _addBend(segment, from, to);
        from = to;
    }
}

void CurvePainter::_addBend(const Segment& segment, const QPointF& from, const QPointF& to) {
    if (to.x() - from.x() > narrowest) {
        const QPointF middle = _pointAt(segment, 0.5 * (from.x() + to.x()));
        if (!(distanceToLine(middle, from, to) <= 0.5 * flatness)) { // Also where it is not finite.
            _addBend(segment, from, middle);
            _addBend(segment, middle, to);
            return;
        }
    }
    _add(to);
}

QPointF CurvePainter::_pointAt(const Segment& segment, double x) const {
    const float value = VQ::Animation::evaluateSegment(segment.leftFrame, segment.left, segment.rightFrame,
                                                       segment.right, _placement.toFrame(x));
    return {x, _placement.toY(double{value})};
}

void CurvePainter::_add(const QPointF& point) {
    if (std::isfinite(point.y())) {
        _line.add(point);
    } else {
        _line.lift();
    }
}

} // namespace Editor
