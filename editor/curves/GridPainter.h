#pragma once

#include "curves/CurvePlacement.h"

#include <QMargins>
#include <QPalette>
#include <QRect>
#include <QString>

class QFontMetrics;
class QPainter;

namespace Editor {

/// Draws the grid behind curves and the rulers beside them: frames and seconds above the plot, values on its
/// left.
class GridPainter {
public:
    GridPainter(QPainter& painter, const CurvePlacement& placement, const QPalette& palette);

    /// What the rulers take from a widget.
    static QMargins margins(const QFontMetrics& metrics);
    /// A number on a ruler whose ticks are @p step apart, with as many digits as tell the ticks apart.
    static QString label(double number, double step);

    void paintGrid();
    void paintRulers(double framesPerSecond);

private:
    double _frameStep() const;
    double _valueStep() const;
    void _paintFrames(const QRect& row);
    void _paintSeconds(const QRect& row, double framesPerSecond);
    void _paintLabelAt(double x, const QRect& row, const QString& text);
    void _paintValues();

    QPainter& _painter;
    CurvePlacement _placement;
    const QPalette& _palette;
};

} // namespace Editor
