#include "fuzz/support/DirectEdit.h"

#include "fuzz/support/Law.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurveExceptions.h"

#include <boost/property_tree/ptree.hpp>

namespace {

using Curve = EditScene::Curve;
using Key = EditScene::Key;

void editKey(EditScene& scene, Key& key) {
    switch (scene.below(6)) {
    case 0:
        return key.setValue(scene.anyNumber());
    case 1: {
        const ZT::TangentSide side = scene.anySide();
        return key.setTangentType(side, scene.anyType());
    }
    case 2: {
        const ZT::TangentSide side = scene.anySide();
        const float frames = scene.anyNumber();
        return key.setTangentOffset(side, {frames, scene.anyNumber()});
    }
    case 3:
        return key.setSmooth(scene.yesOrNo());
    case 4:
        return key.setSymmetrical(scene.yesOrNo());
    default:
        key.getParentCurve()->translateKey(&key, scene.anyFrame());
    }
}

void moveKeys(EditScene& scene) {
    Curve& curve = scene.anyCurve();
    Curve::KeyPosMap positions;
    for (Key* const key : scene.someKeys()) {
        const auto frame = static_cast<double>(scene.anyFrame());
        positions.insert(key, QPointF(frame, static_cast<double>(scene.anyNumber())));
    }
    if (!positions.isEmpty()) { // An empty map leaves the curve silent.
        curve.moveKeys(positions);
    }
}

void insertWherePossible(EditScene& scene) {
    Curve& curve = scene.anyCurve();
    const unsigned int frame = scene.anyFrame();
    if (curve.isIndexAvailable(frame)) {
        curve.insert(frame, scene.newKey());
    }
}

void reorganize(EditScene& scene) {
    Curve& curve = scene.anyCurve();
    Curve::KeysIndexMap frames;
    for (Key* const key : scene.someKeys()) {
        frames.insert(key, scene.anyFrame());
    }
    try {
        curve.reorganizeKeys(frames);
    } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
        for (Key* const key : failure.failedKeys) {
            scene.own(key);
        }
    }
}

void exchange(EditScene& scene) {
    Curve& curve = scene.anyCurve();
    Curve::KeysIndexMap toRelease;
    for (Key* const key : scene.someKeys()) {
        toRelease.insert(key, ZT::index(key));
    }
    const unsigned int frame = scene.anyFrame();
    const Curve::KeysIndexMap released = curve.releaseAndInsertKeys(toRelease, {{scene.newKey(), frame}});
    for (auto entry = released.cbegin(); entry != released.cend(); ++entry) {
        scene.own(entry.key());
    }
}

void replaceCurve(EditScene& scene) {
    Curve& curve = scene.anyCurve();
    curve.getParentLayer()->setCurve(new Curve(curve.baseMotionCurve()));
}

} // namespace

void DirectEdit::gentle(EditScene& scene) {
    switch (scene.below(4)) {
    case 0:
        for (Key* const key : scene.someKeys()) {
            if (key != nullptr) {
                editKey(scene, *key);
            }
        }
        return;
    case 1:
        return moveKeys(scene);
    case 2:
        return insertWherePossible(scene);
    default:
        return scene.anyCurve().updateBezierAutoTangents();
    }
}

void DirectEdit::destructive(EditScene& scene, QUndoStack& history) {
    history.clear();
    switch (scene.below(8)) {
    case 0: {
        Curve& curve = scene.anyCurve();
        return curve.remove(scene.anyFrame());
    }
    case 1: {
        Curve& curve = scene.anyCurve();
        const unsigned int frame = scene.anyFrame();
        curve.insert(frame, scene.newKey());
        return;
    }
    case 2: {
        Curve& curve = scene.anyCurve();
        return scene.own(curve.release(scene.anyFrame()));
    }
    case 3:
        return scene.anyCurve().clear();
    case 4:
        return reorganize(scene);
    case 5:
        return exchange(scene);
    case 6:
        return replaceCurve(scene);
    default:
        requireLaw(scene.animation().deserialize(scene.animation().serialize()),
                   "an animation can read what it wrote");
    }
}
