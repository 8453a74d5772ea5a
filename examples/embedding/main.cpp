#include "commands/MoveCurveKeysCommand.h"
#include "model/EditableAnimation.h"

#include <QUndoStack>

int main() {
    auto* elbow = new VQ::Animation::AnimationLayer; // the animation below owns it
    elbow->actuatorName = "elbow";
    elbow->curve->insert(0, new VQ::Math::Interpolation::Key);
    elbow->curve->insert(25, new VQ::Math::Interpolation::Key);
    VQ::Animation::Animation plain;
    plain.push_back(elbow);

    ZT::EditableAnimation animation(plain);
    QObject::connect(&animation, &ZT::EditableAnimation::layersChanged, [] { qInfo("repaint"); });
    ZT::EditableMotionCurve* curve = animation.getLayer("elbow")->getCurve();
    ZT::EditableMotionCurveKey* key = curve->getKey(25);

    QUndoStack history;
    for (int step = 1; step <= 20; ++step) { // one drag of twenty mouse moves becomes one entry
        history.push(new ZT::AnimCmd::MoveCurveKeysCommand({{key, QPointF(25 + step, 90.0)}}, step == 20));
    }
    qInfo("%d entry, last key at frame %u", history.count(), curve->getGreaterIndex()); // 1 entry, ... 45
    history.undo();
    return curve->getGreaterIndex() == 25 ? 0 : 1;
}
