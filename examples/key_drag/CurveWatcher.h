#pragma once

#include "base/animation/CurveEvaluation.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"

#include <QObject>
#include <QPolygonF>

/// What a view does, without a window: it marks itself when anything changes and reads when it is painted.
class CurveWatcher : public QObject {
public:
    /// Stale until it is painted. Either of the two may die first.
    explicit CurveWatcher(const ZT::EditableAnimation& animation) {
        connect(&animation, &ZT::EditableAnimation::layersChanged, this, [this] { _isStale = true; });
    }

    /// A widget would have called update(), and paintEvent() would come once, however often it did.
    bool isStale() const { return _isStale; }

    /// The curve of a layer, one point for each frame.
    QPolygonF paint(const ZT::EditableAnimationLayer& layer) {
        _isStale = false;
        QPolygonF line;
        const VQ::Animation::MotionCurve curve = layer.getCurve()->baseMotionCurve();
        for (unsigned int frame = 0; frame <= layer.getCurve()->getGreaterIndex(); ++frame) {
            line.append(QPointF(frame, static_cast<double>(VQ::Animation::evaluate(curve, frame))));
        }
        return line;
    }

private:
    bool _isStale = true;
};
