#include "curves/CurveScene.h"

#include "curves/CurvePainter.h"
#include "curves/GridPainter.h"
#include "curves/KeyPainter.h"
#include "curves/MarkerPainter.h"
#include "curves/PlacedKey.h"
#include "curves/ReadableColour.h"
#include "document/Document.h"
#include "document/KeySelection.h"

#include <QPainter>

#include <algorithm>

namespace Editor {

CurveScene::CurveScene(Document& document, const CurvePlacement& placement, const QPalette& palette,
                       int currentLayer)
    : _document(document)
    , _placement(placement)
    , _palette(palette)
    , _currentLayer(currentLayer) {}

void CurveScene::paint(QPainter& painter) const {
    const QRect& plot = _placement.plot();
    if (plot.isEmpty()) {
        return;
    }
    GridPainter grid(painter, _placement, _palette);
    MarkerPainter markers(painter, _placement, _palette, _document.markers());
    painter.fillRect(plot, _palette.color(QPalette::Base));
    markers.paintGround();
    grid.paintGrid();
    painter.setClipRect(plot);
    _paintLayers(painter);
    painter.setClipping(false);
    grid.paintRulers(_document.framesPerSecond());
    markers.paintLines();
}

void CurveScene::paintCurrentFrame(QPainter& painter) const {
    if (!_placement.plot().isEmpty()) {
        MarkerPainter(painter, _placement, _palette, _document.markers()).paintCurrentFrame();
    }
}

// In list order, the current layer last.
std::vector<CurveScene::Layer> CurveScene::_visibleLayers() const {
    const QColor base = _palette.color(QPalette::Base);
    std::vector<Layer> layers;
    for (int i = 0; i < _document.layerCount(); ++i) {
        const LayerLook look = _document.look(i);
        if (!look.isVisible) {
            continue;
        }
        const QColor colour = readableOn(base, look.colour);
        layers.push_back(
            {keysAround(*_document.layer(i)->getCurve(), _placement.firstFrame(), _placement.lastFrame()),
             look.isLocked ? mixed(base, colour, 0.5) : colour, i == _currentLayer});
    }
    std::stable_partition(layers.begin(), layers.end(), [](const Layer& layer) { return !layer.isCurrent; });
    return layers;
}

void CurveScene::_paintLayers(QPainter& painter) const {
    const std::vector<Layer> layers = _visibleLayers();
    CurvePainter curves(painter, _placement);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setBrush(Qt::NoBrush);
    for (const Layer& layer : layers) {
        painter.setPen(
            QPen(layer.colour, layer.isCurrent ? 2.0 : 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        curves.paint(layer.keys);
    }
    KeyPainter keys(painter, _placement, _document.selection(), _palette);
    for (const Layer& layer : layers) {
        keys.paint(layer.keys, layer.colour, layer.isCurrent);
    }
}

} // namespace Editor
