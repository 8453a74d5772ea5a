#pragma once

#include "base/animation/Animation.h"

#include <QImage>
#include <QPainter>
#include <QString>

#include <vector>

/// Draws what edits did to an animation: the curves of the layers that changed most, as they were (dim) and
/// as they are (bright), each in a panel of its own over a common frame axis, with keys and the handles of
/// "bezier" tangents.
///
/// Curves are evaluated pixel by pixel, so that the picture shows what the animation plays. Needs a
/// QGuiApplication.
class CurvePicture {
public:
    /// Both animations must outlive the picture; a layer's counterpart is the one at the same position.
    CurvePicture(const VQ::Animation::Animation& before, const VQ::Animation::Animation& after,
                 QString title);

    /// 1280 x 720 pixels.
    QImage draw() const;

private:
    using Curve = VQ::Animation::MotionCurve;

    struct Span {
        double from = 0.0;
        double to = 1.0;
        double length() const { return to - from; }
    };
    /// One layer: its two curves, where it is drawn and the values that fit there.
    struct Panel {
        const VQ::Animation::AnimationLayer* before;
        const VQ::Animation::AnimationLayer* after;
        QRectF plot;
        Span values;
        QColor color;
    };

    std::vector<Panel> _choosePanels() const;
    double _change(const Curve& before, const Curve& after) const;
    Span _valuesOf(const Curve& before, const Curve& after) const;
    QPointF _toPixels(const Panel& panel, double frame, double value) const;

    void _drawHeader(QPainter& painter) const;
    void _drawPanel(QPainter& painter, const Panel& panel) const;
    void _drawFrameAxis(QPainter& painter, const std::vector<Panel>& panels) const;
    void _drawValueAxis(QPainter& painter, const Panel& panel) const;
    void _drawCurve(QPainter& painter, const Panel& panel, const Curve& curve, const QPen& pen) const;
    void _drawKeys(QPainter& painter, const Panel& panel, const Curve& curve, const QColor& color) const;
    void _drawHandles(QPainter& painter, const Panel& panel, const Curve& curve) const;

    const VQ::Animation::Animation& _before;
    const VQ::Animation::Animation& _after;
    QString _title;
    Span _frames;
};
