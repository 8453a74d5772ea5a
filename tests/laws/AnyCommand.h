#pragma once

#include "LawScene.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"

#include <QList>
#include <QMultiMap>
#include <QSet>
#include <QUndoCommand>

/// Commands that never merge, on random keys: of several curves, with stale frames, null and foreign keys.
class AnyCommand {
public:
    using Curve = LawScene::Curve;
    using Key = LawScene::Key;
    using Keys = LawScene::Keys;
    using CurvesKeysMap = ZT::AnimCmd::ReplaceCurveKeysCommand::CurvesKeysMap;

    explicit AnyCommand(LawScene& scene)
        : _scene(scene) {}

    QUndoCommand* make() {
        using namespace ZT::AnimCmd;
        switch (Draw::below(10)) {
        case 0:
            return new AddCurveKeysCommand(_keysToInsert());
        case 1:
            return _addOne();
        case 2:
            return new RemoveCurveKeysCommand(_list(_scene.someKeys()));
        case 3:
            return new RemoveCurveKeysCommand(_anyKey());
        case 4: {
            const Keys keys = _scene.someKeys();
            _removed = KeyCensus::Keys(keys.begin(), keys.end());
            return new ReplaceCurveKeysCommand(_list(keys), _keysToInsert());
        }
        case 5: {
            const CurvesKeysMap keys = _keysToRemove();
            return new ReplaceCurveKeysCommand(keys, _keysToInsert());
        }
        case 6:
            return _changeType();
        case 7:
            return new ChangeTangentParamCommand(_set(_scene.someKeys()), Draw::type(_scene.automatic()),
                                                 Draw::yesOrNo(), Draw::yesOrNo());
        case 8:
            return Draw::yesOrNo() ? new ChangeSmoothnessCommand(_set(_scene.someKeys()), Draw::yesOrNo())
                                   : new ChangeSmoothnessCommand(_anyKey(), Draw::yesOrNo());
        default:
            return Draw::yesOrNo() ? new ChangeSymmetryCommand(_set(_scene.someKeys()), Draw::yesOrNo())
                                   : new ChangeSymmetryCommand(_anyKey(), Draw::yesOrNo());
        }
    }

private:
    static QSet<Key*> _set(const Keys& keys) { return {keys.begin(), keys.end()}; }
    static QList<Key*> _list(const Keys& keys) { return {keys.begin(), keys.end()}; }

    Key* _anyKey() const {
        const Keys keys = _scene.someKeys();
        return keys.empty() ? nullptr : Draw::oneOf(keys);
    }

    QUndoCommand* _addOne() const {
        using ZT::AnimCmd::AddCurveKeysCommand;
        switch (Draw::below(8)) {
        case 5:
            return _addStanding();
        case 6:
            return new AddCurveKeysCommand(nullptr, _scene.anyCurve(), _scene.anyFrame());
        case 7: // Without a curve the command takes no key.
            return new AddCurveKeysCommand(_scene.looseKey(), nullptr, _scene.anyFrame());
        default:
            return new AddCurveKeysCommand(_scene.newKey(), _scene.anyCurve(), _scene.anyFrame());
        }
    }

    /// A key that a curve holds is not taken in a second time.
    QUndoCommand* _addStanding() const {
        const Keys held = _scene.heldKeys();
        Key* const key = held.empty() ? nullptr : Draw::oneOf(held);
        Curve* const curve = _scene.anyCurve();
        const unsigned int frame = _scene.anyFrame();
        return new ZT::AnimCmd::AddCurveKeysCommand(curve->getKey(frame) == key ? nullptr : key, curve,
                                                    frame);
    }

    /// New keys, which often share frames with each other and with keys that stand there.
    CurvesKeysMap _keysToInsert() const {
        CurvesKeysMap keys;
        for (int count = Draw::below(5); count > 0; --count) {
            keys[_scene.anyCurve()].insert(_scene.newKey(), _scene.anyFrame());
        }
        if (Draw::rarely(8)) {
            keys[_scene.anyCurve()].insert(nullptr, _scene.anyFrame());
        }
        return keys;
    }

    /// Some with a frame or a curve at which they do not stand.
    CurvesKeysMap _keysToRemove() {
        CurvesKeysMap keys;
        const bool allRight = Draw::yesOrNo();
        for (Key* const key : _scene.someKeys()) {
            const bool isStale = !allRight && Draw::rarely(4);
            Curve* const curve = key == nullptr || isStale ? nullptr : key->getParentCurve();
            keys[curve != nullptr ? curve : _scene.anyCurve()].insert(
                key, ZT::index(key) + (isStale && Draw::yesOrNo() ? 1U : 0U));
            _removed.insert(key);
        }
        return keys;
    }

    QUndoCommand* _changeType() const {
        using ZT::AnimCmd::ChangeInterpTypeCommand;
        if (Draw::yesOrNo()) {
            return new ChangeInterpTypeCommand(_anyKey(), Draw::side(), Draw::type(_scene.automatic()));
        }
        QMultiMap<Key*, ZT::TangentSide> tangents;
        for (Key* const key : _scene.someKeys()) {
            const int sides = Draw::below(3);
            if (sides != 1) {
                tangents.insert(key, ZT::TangentSide::left);
            }
            if (sides != 0) {
                tangents.insert(key, ZT::TangentSide::right);
            }
        }
        return new ChangeInterpTypeCommand(tangents, Draw::type(_scene.automatic()));
    }

    LawScene& _scene;
    KeyCensus::Keys _removed;
};
