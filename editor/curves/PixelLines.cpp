#include "curves/PixelLines.h"

#include <algorithm>
#include <cmath>

namespace Editor {

namespace {

// Narrows the part [from, to] of a line that starts at @p start and runs over @p length to what lies in [low,
// high].
bool narrow(double start, double length, double low, double high, double& from, double& to) {
    if (length == 0.0) {
        return start >= low && start <= high;
    }
    const double a = (low - start) / length;
    const double b = (high - start) / length;
    from = std::max(from, std::min(a, b));
    to = std::min(to, std::max(a, b));
    return from <= to;
}

} // namespace

bool clipLine(QPointF& a, QPointF& b, const QRectF& bounds) {
    double from = 0.0;
    double to = 1.0;
    const QPointF along = b - a;
    if (!narrow(a.x(), along.x(), bounds.left(), bounds.right(), from, to) ||
        !narrow(a.y(), along.y(), bounds.top(), bounds.bottom(), from, to)) {
        return false;
    }
    // Rounding of a far end must not carry the point out again.
    const auto at = [&, start = a](double part) {
        const QPointF point = start + along * part;
        return QPointF(std::clamp(point.x(), bounds.left(), bounds.right()),
                       std::clamp(point.y(), bounds.top(), bounds.bottom()));
    };
    if (to < 1.0) {
        b = at(to);
    }
    if (from > 0.0) {
        a = at(from);
    }
    return true;
}

double distanceToLine(const QPointF& point, const QPointF& a, const QPointF& b) {
    const QPointF along = b - a;
    const QPointF toPoint = point - a;
    const double square = QPointF::dotProduct(along, along);
    const double part =
        square > 0.0 ? std::clamp(QPointF::dotProduct(toPoint, along) / square, 0.0, 1.0) : 0.0;
    const QPointF apart = toPoint - along * part;
    return std::sqrt(QPointF::dotProduct(apart, apart));
}

} // namespace Editor
