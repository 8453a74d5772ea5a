// From a plain animation to the first undo: what docs/tour.md walks through, step by step.

#include "base/animation/AnimationXml.h"
#include "base/animation/CurveEvaluation.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "model/EditableAnimation.h"

#include <QUndoStack>

#include <boost/property_tree/ptree.hpp>

#include <memory>
#include <sstream>

namespace {

std::unique_ptr<VQ::Animation::AnimationLayer> elbow() {
    auto layer = std::make_unique<VQ::Animation::AnimationLayer>();
    layer->actuatorName = "elbow";
    for (const auto& [frame, value] : {std::pair(0U, 10.0F), std::pair(12U, 80.0F), std::pair(25U, 30.0F)}) {
        auto key = std::make_unique<VQ::Math::Interpolation::Key>();
        key->value = value;
        layer->curve->insert(frame, key.release()); // the curve owns it now
    }
    return layer;
}

bool check(bool isRight, const char* what) {
    qInfo("%s: %s", what, isRight ? "yes" : "NO");
    return isRight;
}

} // namespace

int main() {
    VQ::Animation::Animation plain;
    plain.push_back(elbow().release()); // the animation owns it now

    ZT::EditableAnimation animation(plain);
    ZT::EditableMotionCurve* const curve = animation.getLayer("elbow")->getCurve();

    int repaints = 0;
    QObject::connect(&animation, &ZT::EditableAnimation::layersChanged, [&] { ++repaints; });

    ZT::EditableMotionCurveKey* const middle = curve->getKey(12);
    middle->setValue(90.0F);
    bool isRight = check(repaints > 0, "an edit was heard");

    QUndoStack history;
    history.push(new ZT::AnimCmd::MoveCurveKeysCommand({{middle, QPointF(15, 70)}}, true));
    isRight &= check(ZT::index(middle) == 15 && middle->getValue() == 70.0F, "the key stands at 15");

    history.push(new ZT::AnimCmd::RemoveCurveKeysCommand(middle)); // the command owns the key now
    isRight &= check(curve->size() == 2, "the key is out");

    history.undo();
    history.undo();
    isRight &= check(ZT::index(middle) == 12 && middle->getValue() == 90.0F, "all is as it was");

    const VQ::Animation::MotionCurve record = curve->baseMotionCurve();
    isRight &= check(VQ::Animation::evaluate(record, 12.0) == 90.0F, "the curve runs through the key");

    std::ostringstream file;
    VQ::Animation::writeAnimationXml(file, animation.serialize());
    std::istringstream saved(file.str());
    ZT::EditableAnimation reopened;
    const bool isRead = reopened.deserialize(VQ::Animation::readAnimationXml(saved));
    isRight &= check(isRead && reopened.getGreaterIndex() == 25, "what was saved can be read");
    return isRight ? 0 : 1;
}
