#pragma once

#include "curves/CurvePlacement.h"

#include <QColor>
#include <QPalette>

#include <vector>

class QPainter;

namespace Editor {

class Document;
struct PlacedKey;

/// Draws all of a curve view: what is visible of the document, in one go, and the current frame above it.
class CurveScene {
public:
    CurveScene(Document& document, const CurvePlacement& placement, const QPalette& palette,
               int currentLayer);

    void paint(QPainter& painter) const;
    void paintCurrentFrame(QPainter& painter) const;

private:
    struct Layer {
        std::vector<PlacedKey> keys;
        QColor colour;
        bool isCurrent;
    };

    std::vector<Layer> _visibleLayers() const;
    void _paintLayers(QPainter& painter) const;

    Document& _document;
    CurvePlacement _placement;
    const QPalette& _palette;
    int _currentLayer;
};

} // namespace Editor
