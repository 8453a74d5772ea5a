// A view, a drag and a command of one's own: what docs/embedding.md explains.

#include "CurveWatcher.h"
#include "KeyDrag.h"
#include "ScaleValuesCommand.h"

#include <algorithm>

int main() {
    auto* const layer = new VQ::Animation::AnimationLayer; // the animation below owns it
    layer->actuatorName = "elbow";
    for (const unsigned int frame : {0U, 10U, 20U}) {
        layer->curve->insert(frame, new VQ::Math::Interpolation::Key); // and the curve its keys
    }
    VQ::Animation::Animation plain;
    plain.push_back(layer);

    ZT::EditableAnimation animation(plain);
    ZT::EditableMotionCurve& curve = *animation.getLayer("elbow")->getCurve();
    CurveWatcher watcher(animation);
    watcher.paint(*animation.getLayer("elbow"));

    QUndoStack history; // behind the animation, so that it dies first
    KeyDrag drag(history);
    drag.press({curve.getKey(10), curve.getKey(20)});
    for (int step = 1; step <= 5; ++step) {
        drag.move(QPointF(step, 2.0 * step)); // mouse moves
    }
    drag.release(QPointF(5, 10));
    const bool isDragged = history.count() == 1 && curve.getKey(25) != nullptr && watcher.isStale();

    history.push(new ScaleValuesCommand(curve, 0.0F));
    const bool isFlat = curve.getKey(25)->getValue() == 0.0F;
    history.undo();
    const bool isBack = curve.getKey(25)->getValue() == 10.0F;
    const bool isPainted = watcher.paint(*animation.getLayer("elbow")).size() == 26;
    const auto claims = {isDragged, isFlat, isBack, isPainted};
    const auto held = std::count(claims.begin(), claims.end(), true);
    qInfo("%d of 4", static_cast<int>(held));
    return held == 4 ? 0 : 1;
}
