#include "curves/GridPainter.h"

#include "curves/ReadableColour.h"
#include "curves/ViewAxis.h"
#include "document/Translation.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Editor {

namespace {

constexpr int tickLength = 4;  // pixels
constexpr int labelGap = 16;   // between labels in a row
constexpr int rulerMargin = 4; // around labels

// Steps are so chosen that there are less ticks than pixels; doubles that cannot tell them apart any more end
// the walk.
template <class Action>
void forEachTick(double first, double last, double step, Action action) {
    constexpr int most = 10000;
    const double start = std::ceil(first / step);
    for (int i = 0; i < most && (start + i) * step <= last; ++i) {
        action((start + i) * step);
    }
}

} // namespace

GridPainter::GridPainter(QPainter& painter, const CurvePlacement& placement, const QPalette& palette)
    : _painter(painter)
    , _placement(placement)
    , _palette(palette) {}

QMargins GridPainter::margins(const QFontMetrics& metrics) {
    return {metrics.horizontalAdvance("-0.0000e+00") + tickLength + 2 * rulerMargin,
            2 * metrics.height() + tickLength + rulerMargin, 0, 0};
}

QString GridPainter::label(double number, double step) {
    if (std::abs(number) < 1e-6 * step) {
        return "0";
    }
    if (step < 1e-4 || std::abs(number) >= 1e7) {
        const double digits = std::ceil(std::log10(std::abs(number) / step)) + 1.0;
        return QString::number(number, 'g', static_cast<int>(std::clamp(digits, 1.0, 15.0)));
    }
    const double decimals = -std::floor(std::log10(step) + 1e-9);
    return QString::number(number, 'f', static_cast<int>(std::clamp(decimals, 0.0, 4.0)));
}

void GridPainter::paintGrid() {
    const QRectF plot(_placement.plot());
    const QColor base = _palette.color(QPalette::Base);
    const QColor text = _palette.color(QPalette::Text);
    _painter.setPen(mixed(base, text, 0.1));
    forEachTick(_placement.firstFrame(), _placement.lastFrame(), _frameStep(), [&](double frame) {
        const double x = std::floor(_placement.toX(frame)) + 0.5;
        _painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    });
    forEachTick(_placement.lowestValue(), _placement.highestValue(), _valueStep(), [&](double value) {
        const double y = std::floor(_placement.toY(value)) + 0.5;
        _painter.setPen(mixed(base, text, std::abs(value) < 1e-6 * _valueStep() ? 0.3 : 0.1));
        _painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
    });
}

void GridPainter::paintRulers(double framesPerSecond) {
    const QRect& plot = _placement.plot();
    const int rowHeight = _painter.fontMetrics().height();
    const QRect corner(0, 0, plot.left(), plot.top());
    _painter.fillRect(QRect(0, 0, plot.right() + 1, plot.top()), _palette.color(QPalette::Window));
    _painter.fillRect(QRect(0, 0, plot.left(), plot.bottom() + 1), _palette.color(QPalette::Window));
    _painter.setPen(_palette.color(QPalette::WindowText));

    const QRect frames(plot.left(), rulerMargin / 2, plot.width(), rowHeight);
    const QRect seconds = frames.translated(0, rowHeight);
    const auto paintCaption = [&](const QRect& row, const QString& caption) {
        const QRect place(corner.left() + rulerMargin, row.top(), corner.width() - 2 * rulerMargin,
                          row.height());
        _painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter,
                          _painter.fontMetrics().elidedText(caption, Qt::ElideRight, place.width()));
    };
    paintCaption(frames, tr("frames"));
    paintCaption(seconds, tr("seconds"));
    _paintFrames(frames);
    _paintSeconds(seconds, framesPerSecond);
    _paintValues();
}

// Ticks stand at whole frames, far enough apart for the longest of their labels.
double GridPainter::_frameStep() const {
    const double longest = std::max(std::abs(_placement.firstFrame()), std::abs(_placement.lastFrame()));
    const int width = _painter.fontMetrics().horizontalAdvance('-' + QString::number(longest, 'f', 0));
    return std::max(1.0, ViewAxis::niceStep((width + labelGap) / _placement.pixelsPerFrame()));
}

double GridPainter::_valueStep() const {
    return ViewAxis::niceStep(2.2 * _painter.fontMetrics().height() / _placement.pixelsPerValue());
}

void GridPainter::_paintFrames(const QRect& row) {
    const double bottom = _placement.plot().top() - 0.5;
    forEachTick(_placement.firstFrame(), _placement.lastFrame(), _frameStep(), [&](double frame) {
        const double x = std::floor(_placement.toX(frame)) + 0.5;
        _painter.drawLine(QPointF(x, bottom - tickLength), QPointF(x, bottom));
        _paintLabelAt(x, row, QString::number(frame, 'f', 0));
    });
}

void GridPainter::_paintSeconds(const QRect& row, double framesPerSecond) {
    const double pixelsPerSecond = _placement.pixelsPerFrame() * framesPerSecond;
    const double first = _placement.firstFrame() / framesPerSecond;
    const double last = _placement.lastFrame() / framesPerSecond;
    // The step decides how long labels are, and they how large a step must be.
    double step = 0.0;
    for (double room = 0.0, width = 2.0 * labelGap; room < width;) {
        room = width;
        step = ViewAxis::niceStep(room / pixelsPerSecond);
        for (const double end : {first, last}) {
            const double tick = std::round(end / step) * step;
            const int advance = _painter.fontMetrics().horizontalAdvance(label(tick, step));
            width = std::max(width, static_cast<double>(advance + labelGap));
        }
    }
    forEachTick(first, last, step, [&](double second) {
        _paintLabelAt(_placement.toX(second * framesPerSecond), row, label(second, step));
    });
}

// Labels that the edge would cut are left out.
void GridPainter::_paintLabelAt(double x, const QRect& row, const QString& text) {
    const int width = _painter.fontMetrics().horizontalAdvance(text);
    if (x - 0.5 * width >= row.left() && x + 0.5 * width <= row.right()) {
        _painter.drawText(QRectF(x - 0.5 * width - 1.0, row.top(), width + 2.0, row.height()),
                          Qt::AlignCenter, text);
    }
}

void GridPainter::_paintValues() {
    const QRect& plot = _placement.plot();
    const int height = _painter.fontMetrics().height();
    const int width = plot.left() - tickLength - 2 * rulerMargin;
    const double step = _valueStep();
    forEachTick(_placement.lowestValue(), _placement.highestValue(), step, [&](double value) {
        const double y = std::floor(_placement.toY(value)) + 0.5;
        _painter.drawLine(QPointF(plot.left() - tickLength, y), QPointF(plot.left(), y));
        if (y - 0.5 * height >= plot.top() && y + 0.5 * height <= plot.bottom()) {
            // What tells the ticks apart stands at the end of a number.
            const QString text = _painter.fontMetrics().elidedText(label(value, step), Qt::ElideLeft, width);
            _painter.drawText(QRectF(rulerMargin, y - 0.5 * height, width, height),
                              Qt::AlignRight | Qt::AlignVCenter, text);
        }
    });
}

} // namespace Editor
