#include "curves/HitTest.h"

#include "curves/PixelLines.h"
#include "curves/PlacedKey.h"
#include "document/Document.h"

#include <cmath>
#include <limits>

namespace Editor {

using Part = Hit::Part;
using ZT::TangentSide;

struct HitTest::Nearest {
    double cost = std::numeric_limits<double>::infinity();
    std::optional<Hit> hit;
};

HitTest::HitTest(Document& document, const CurvePlacement& placement, int currentLayer)
    : _document(document)
    , _placement(placement)
    , _currentLayer(currentLayer) {}

std::optional<Hit> HitTest::at(const QPointF& point) const {
    if (!QRectF(_placement.plot()).contains(point)) {
        return std::nullopt;
    }
    const auto seekIn = [&](auto seek, Nearest& nearest) {
        for (int i = 0; i < _document.layerCount(); ++i) {
            if (_document.look(i).isVisible) {
                (this->*seek)(point, i, nearest);
            }
        }
    };
    Nearest nearest;
    seekIn(&HitTest::_seekKey, nearest);
    _seekHandles(point, nearest);
    if (!nearest.hit) {
        seekIn(&HitTest::_seekCurve, nearest);
    }
    return nearest.hit;
}

KeySelection::Keys HitTest::keysIn(const QRectF& rectangle) const {
    KeySelection::Keys keys;
    for (int i = 0; i < _document.layerCount(); ++i) {
        if (!_document.look(i).isVisible) {
            continue;
        }
        ZT::EditableMotionCurve& curve = *_document.layer(i)->getCurve();
        const double first = _placement.toFrame(rectangle.left());
        for (const PlacedKey& placed : keysAround(curve, first, _placement.toFrame(rectangle.right()))) {
            const QPointF point = _placement.toPoint(placed.frame, double{placed.key->getValue()});
            if (std::isfinite(point.y()) && rectangle.contains(point)) {
                keys.insert(placed.key);
            }
        }
    }
    return keys;
}

void HitTest::_seekKey(const QPointF& point, int layer, Nearest& nearest) const {
    const double first = _placement.toFrame(point.x() - tolerance);
    const double last = _placement.toFrame(point.x() + tolerance);
    for (const PlacedKey& placed : keysAround(*_document.layer(layer)->getCurve(), first, last)) {
        const QPointF away = point - _placement.toPoint(placed.frame, double{placed.key->getValue()});
        _offer(std::hypot(away.x(), away.y()), {Part::key, layer, placed.key, TangentSide::left}, nearest);
    }
}

void HitTest::_seekHandles(const QPointF& point, Nearest& nearest) const {
    for (ZT::EditableMotionCurveKey* const key : _document.selection().keys()) {
        const PlacedKey placed{ZT::index(key), key};
        for (const TangentSide side : {TangentSide::left, TangentSide::right}) {
            if (key->getTangentType(side) != VQ::Math::Interpolation::InterpolationType::bezier) {
                continue;
            }
            const auto end = handleEnd(_placement, placed, side);
            const QPointF away = end ? point - *end : QPointF();
            if (end && std::hypot(away.x(), away.y()) <= tolerance &&
                roomOf(_placement, placed) >= roomForHandles) {
                const int layer = _document.indexOf(key->getParentCurve()->getParentLayer());
                _offer(std::hypot(away.x(), away.y()), {Part::handle, layer, key, side}, nearest);
            }
        }
    }
}

// The curve as it is drawn, a few pixels to each side.
void HitTest::_seekCurve(const QPointF& point, int layer, Nearest& nearest) const {
    const ZT::EditableMotionCurve& curve = *_document.layer(layer)->getCurve();
    if (curve.empty()) {
        return;
    }
    const auto pointAt = [&](double x) {
        return QPointF(x, _placement.toY(double{curve.valueAt(_placement.toFrame(x))}));
    };
    constexpr int pieces = 6;
    double distance = std::numeric_limits<double>::infinity();
    QPointF from = pointAt(point.x() - tolerance);
    for (int piece = 1; piece <= pieces; ++piece) {
        const QPointF to = pointAt(point.x() + tolerance * (2.0 * piece / pieces - 1.0));
        if (std::isfinite(from.y()) && std::isfinite(to.y())) {
            distance = std::min(distance, distanceToLine(point, from, to));
        }
        from = to;
    }
    _offer(distance, {Part::curve, layer, nullptr, TangentSide::left}, nearest);
}

// Also refuses a distance that is not finite.
void HitTest::_offer(double distance, const Hit& hit, Nearest& nearest) const {
    if (!(distance <= tolerance)) {
        return;
    }
    const double locked = _document.look(hit.layer).isLocked ? 2.0 * tolerance : 0.0;
    const double current = hit.layer == _currentLayer ? 0.5 * tolerance : 0.0;
    const double cost = distance + locked - current;
    if (cost < nearest.cost) {
        nearest = {cost, hit};
    }
}

} // namespace Editor
