#pragma once

#include "LawScene.h"
#include "model/EditableMotionCurveExceptions.h"

/// Edits past the history, as other code of an editor makes them.
class AnyEdit {
public:
    using Curve = LawScene::Curve;
    using Key = LawScene::Key;

    explicit AnyEdit(LawScene& scene)
        : _scene(scene) {}

    /// One key's setter, or a single edit that leaves all keys in their curves.
    void changeOne() {
        const LawScene::Keys held = _scene.heldKeys();
        if (held.empty()) {
            return insertNew();
        }
        Key* const key = Draw::oneOf(held);
        switch (Draw::below(8)) {
        case 0:
            return key->setValue(Draw::number());
        case 1:
            return key->setTangentType(Draw::side(), Draw::type(_scene.automatic()));
        case 2: {
            const auto [x, y] = Draw::handle();
            return key->setTangentOffset(Draw::side(), {x, y});
        }
        case 3:
            return key->setSmooth(Draw::yesOrNo());
        case 4:
            return key->setSymmetrical(Draw::yesOrNo());
        case 5:
            key->getParentCurve()->translateKey(key, _scene.anyFrame());
            return;
        case 6:
            return _scene.anyCurve()->updateBezierAutoTangents();
        default:
            return insertNew();
        }
    }

    /// A new key where none stands.
    void insertNew() {
        Curve* const curve = _scene.anyCurve();
        const unsigned int frame = Draw::frame();
        if (curve->isIndexAvailable(frame)) {
            curve->insert(frame, _scene.newKey());
        }
    }

    /// A bulk edit of one curve that leaves all keys in their curves. None is given nothing to do.
    void changeMany() {
        Curve* const curve = _scene.anyCurve();
        const LawScene::Keys some = _scene.someKeys();
        const Curve::KeysSet keys(some.begin(), some.end());
        if (keys.isEmpty()) {
            return;
        }
        const auto [x, y] = Draw::handle();
        switch (Draw::below(6)) {
        case 0: {
            Curve::KeyPosMap positions;
            for (Key* const key : keys) {
                positions.insert(key, QPointF(Draw::position(), double{Draw::number()}));
            }
            return curve->moveKeys(positions);
        }
        case 1:
            return curve->moveTangents(keys, Draw::side(), {x, y});
        case 2:
            return curve->setKeysParam(keys, Draw::type(_scene.automatic()), Draw::yesOrNo(),
                                       Draw::yesOrNo());
        case 3:
            return curve->setKeysSmooth(keys, Draw::yesOrNo());
        case 4:
            return curve->setKeysSymmetrical(keys, Draw::yesOrNo());
        default:
            return _restore(*curve, keys);
        }
    }

    /// One single edit that takes a key away, or all of a curve.
    void takeAwayOne() {
        Curve* const curve = _scene.anyCurve();
        switch (Draw::below(6)) {
        case 0:
            return curve->remove(_scene.anyFrame());
        case 1:
            return _scene.own(curve->release(_scene.anyFrame()));
        case 2:
            curve->insert(_scene.anyFrame(), _scene.newKey());
            return;
        case 3:
            if (!curve->empty()) {
                const LawScene::Keys held = _keysOf(*curve);
                curve->insert(_scene.anyFrame(), Draw::oneOf(held));
            }
            return;
        case 4:
            return curve->remove(curve->find(_scene.anyFrame()));
        default:
            return Draw::rarely(3) ? curve->clear() : curve->remove(curve->begin());
        }
    }

    /// A bulk edit that may take keys away and take in others.
    void takeAwayMany() {
        Curve* const curve = _scene.anyCurve();
        Curve::KeysIndexMap frames;
        for (Key* const key : _scene.someKeys()) {
            frames.insert(key, _scene.anyFrame());
        }
        if (Draw::yesOrNo()) {
            _reorganize(*curve, frames);
        } else {
            _exchange(*curve, frames);
        }
        _scene.letGoOfHeldKeys();
    }

private:
    static LawScene::Keys _keysOf(Curve& curve) {
        LawScene::Keys keys;
        for (const auto element : curve) {
            keys.push_back(element.second);
        }
        return keys;
    }

    void _restore(Curve& curve, const Curve::KeysSet& keys) const {
        Curve::TangentTypeMap types;
        Curve::TangentPosMap left;
        Curve::TangentPosMap right;
        Curve::KeyStateMap smooth;
        Curve::KeyStateMap symmetrical;
        for (Key* const key : keys) {
            types.insert(key, {Draw::side(), Draw::type(_scene.automatic())});
            left.insert(key, {Draw::number(), Draw::number()});
            right.insert(key, {Draw::number(), Draw::number()});
            smooth.insert(key, Draw::yesOrNo());
            symmetrical.insert(key, Draw::yesOrNo());
        }
        curve.restoreKeys(types, left, right, smooth, symmetrical);
    }

    /// Failed keys that came from the curve have no owner then; those of the scene stay with it.
    void _reorganize(Curve& curve, const Curve::KeysIndexMap& frames) {
        try {
            curve.reorganizeKeys(frames);
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            for (Key* const key : failure.failedKeys) {
                if (!_scene.owns(key)) {
                    _scene.own(key);
                }
            }
        }
    }

    void _exchange(Curve& curve, const Curve::KeysIndexMap& frames) {
        Curve::KeysIndexMap toRelease;
        for (auto entry = frames.cbegin(); entry != frames.cend(); ++entry) {
            toRelease.insert(entry.key(), Draw::rarely(4) ? entry.value() : ZT::index(entry.key()));
        }
        Curve::KeysIndexMap toInsert{{_scene.newKey(), Draw::frame()}, {_scene.newKey(), Draw::frame()}};
        toInsert.insert(_scene.looseKey(), Draw::frame());
        const Curve::KeysIndexMap left = curve.releaseAndInsertKeys(toRelease, toInsert);
        for (auto entry = left.cbegin(); entry != left.cend(); ++entry) {
            if (!_scene.owns(entry.key())) {
                _scene.own(entry.key());
            }
        }
    }

    LawScene& _scene;
};
