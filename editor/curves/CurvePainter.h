#pragma once

#include "base/math/Interpolation.h"
#include "curves/ClippedPolyline.h"
#include "curves/CurvePlacement.h"
#include "curves/PlacedKey.h"

#include <vector>

class QPainter;

namespace Editor {

/// Draws the line of one curve with the painter's pen, as far as it is visible and finite.
///
/// Where several keys share a column of pixels, it is the line from the least to the greatest of them.
/// Otherwise what is straight to half a pixel is drawn straight; the rest is evaluated as densely as its
/// bends need, no more than twice a pixel.
class CurvePainter {
public:
    CurvePainter(QPainter& painter, const CurvePlacement& placement);

    /// @p keys are those around the visible frames.
    void paint(const std::vector<PlacedKey>& keys);

private:
    using Key = VQ::Math::Interpolation::Key;
    struct Segment;

    void _addColumn(std::vector<PlacedKey>::const_iterator begin, std::vector<PlacedKey>::const_iterator end);
    void _addSegment(const PlacedKey& left, const PlacedKey& right);
    bool _isFlat(const Segment& segment) const;
    void _addCubic(const Segment& segment);
    void _addBend(const Segment& segment, const QPointF& from, const QPointF& to);
    QPointF _pointAt(const Segment& segment, double x) const;
    void _add(const QPointF& point);

    CurvePlacement _placement;
    ClippedPolyline _line;
};

} // namespace Editor
