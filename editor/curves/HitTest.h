#pragma once

#include "base/TangentSide.h"
#include "curves/CurvePlacement.h"
#include "document/KeySelection.h"

#include <QPointF>
#include <QRectF>

#include <optional>

namespace Editor {

class Document;

/// What lies under a point of a curve view.
struct Hit {
    enum class Part : int { curve, key, handle };

    Part part;
    int layer;
    ZT::EditableMotionCurveKey* key; ///< null for a curve
    ZT::TangentSide side;            ///< of the handle
};

/// Finds what lies under a point: of visible layers only, keys and grips of handles before curves, the
/// nearest one, where one of the current layer counts as a little nearer, and what can be edited before what
/// is locked.
class HitTest {
public:
    static constexpr double tolerance = 6.0; ///< pixels

    HitTest(Document& document, const CurvePlacement& placement, int currentLayer);

    /// Empty outside the plot and where nothing is near. O(layers * log n + keys near by + selected keys).
    std::optional<Hit> at(const QPointF& point) const;
    /// The keys within a rectangle of pixels.
    KeySelection::Keys keysIn(const QRectF& rectangle) const;

private:
    struct Nearest;

    void _seekKey(const QPointF& point, int layer, Nearest& nearest) const;
    void _seekHandles(const QPointF& point, Nearest& nearest) const;
    void _seekCurve(const QPointF& point, int layer, Nearest& nearest) const;
    void _offer(double distance, const Hit& hit, Nearest& nearest) const;

    Document& _document;
    CurvePlacement _placement;
    int _currentLayer;
};

} // namespace Editor
