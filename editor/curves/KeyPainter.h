#pragma once

#include "base/TangentSide.h"
#include "curves/CurvePlacement.h"
#include "curves/PlacedKey.h"

#include <QColor>
#include <QPalette>
#include <QRectF>

#include <vector>

class QPainter;

namespace Editor {

class KeySelection;

/// Draws the keys of a curve, and the handles of the selected ones: those that can be dragged with a grip,
/// automatic ones as thin lines. Where keys stand too close together for that, only the selected ones are
/// drawn.
class KeyPainter {
public:
    KeyPainter(QPainter& painter, const CurvePlacement& placement, const KeySelection& selection,
               const QPalette& palette);

    /// @p keys are those around the visible frames; those of the current layer are larger.
    void paint(const std::vector<PlacedKey>& keys, const QColor& colour, bool isCurrent);

private:
    struct Marks;

    void _add(const PlacedKey& placed, double room, bool isCurrent, Marks& marks);
    void _paintHandle(const PlacedKey& placed, ZT::TangentSide side, const QColor& colour);

    QPainter& _painter;
    CurvePlacement _placement;
    QRectF _bounds; ///< of marks that can be seen
    const KeySelection& _selection;
    const QPalette& _palette;
};

} // namespace Editor
