#include "fuzz/support/AnyCommand.h"

#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "commands/StretchRangeCommand.h"
#include "model/AnimationMarkers.h"

using namespace ZT::AnimCmd;

namespace {

using Curve = EditScene::Curve;
using Key = EditScene::Key;
using CurvesKeysMap = ReplaceCurveKeysCommand::CurvesKeysMap;

QSet<Key*> toSet(const EditScene::Keys& keys) {
    return {keys.begin(), keys.end()};
}

QList<Key*> toList(const EditScene::Keys& keys) {
    return {keys.begin(), keys.end()};
}

CurvesKeysMap keysToInsert(EditScene& scene) {
    CurvesKeysMap result;
    const unsigned int count = scene.below(4);
    for (unsigned int i = 0; i < count; ++i) {
        Curve& curve = scene.anyCurve();
        const unsigned int frame = scene.anyFrame();
        result[&curve].insert(scene.newKey(), frame);
    }
    return result;
}

/// With their frames, or now and then another one.
CurvesKeysMap keysToRemove(EditScene& scene) {
    CurvesKeysMap result;
    const unsigned int error = scene.below(4) == 0 ? 1 : 0;
    for (Key* const key : scene.someKeys()) {
        if (key != nullptr) {
            result[key->getParentCurve()].insert(key, ZT::index(key) + error);
        }
    }
    return result;
}

QMultiMap<Key*, ZT::TangentSide> someTangents(EditScene& scene) {
    QMultiMap<Key*, ZT::TangentSide> result;
    for (Key* const key : scene.someKeys()) {
        result.insert(key, scene.anySide());
    }
    return result;
}

} // namespace

QUndoCommand* AnyCommand::single(EditScene& scene) {
    switch (scene.below(8)) {
    case 0:
        return new AddCurveKeysCommand(keysToInsert(scene));
    case 1: {
        Curve& curve = scene.anyCurve();
        const unsigned int frame = scene.anyFrame();
        return new AddCurveKeysCommand(scene.newKey(), &curve, frame);
    }
    case 2:
        return new RemoveCurveKeysCommand(toList(scene.someKeys()));
    case 3: {
        const QList<Key*> keys = toList(scene.someKeys());
        return new ReplaceCurveKeysCommand(keys, keysToInsert(scene));
    }
    case 4: {
        const CurvesKeysMap keys = keysToRemove(scene);
        return new ReplaceCurveKeysCommand(keys, keysToInsert(scene));
    }
    case 5: {
        const auto tangents = someTangents(scene);
        return new ChangeInterpTypeCommand(tangents, scene.anyType());
    }
    case 6: {
        const QSet<Key*> keys = toSet(scene.someKeys());
        const auto type = scene.anyType();
        const bool smooth = scene.yesOrNo();
        return new ChangeTangentParamCommand(keys, type, smooth, scene.yesOrNo());
    }
    default: {
        const QSet<Key*> keys = toSet(scene.someKeys());
        const bool state = scene.yesOrNo();
        if (scene.yesOrNo()) {
            return new ChangeSmoothnessCommand(keys, state);
        }
        return new ChangeSymmetryCommand(keys, state);
    }
    }
}

AnyCommand::Drag::Drag(EditScene& scene)
    : _scene(scene)
    , _kind(scene.below(5))
    , _keys(scene.someKeys())
    , _rangeStart(scene.markers().rangeStartIndex())
    , _rangeEnd(scene.markers().rangeEndIndex()) {
    const bool isExact = scene.below(4) != 0;
    for (Key* const key : _keys) {
        _frames.insert(key, isExact ? ZT::index(key) : scene.anyFrame());
    }
}

QUndoCommand* AnyCommand::Drag::step(bool finalStep) {
    switch (_kind) {
    case 0:
        return _moveKeys(finalStep);
    case 1:
        return _moveTangents(finalStep);
    default:
        return _changeRange(finalStep);
    }
}

QUndoCommand* AnyCommand::Drag::_moveKeys(bool finalStep) {
    Curve::KeyPosMap positions;
    const bool isTogether = _scene.yesOrNo();
    const double by = static_cast<double>(_scene.below(21)) - 10.0;
    for (Key* const key : _keys) {
        const double frame = isTogether         ? _frames.value(key) + by
                             : _scene.yesOrNo() ? static_cast<double>(_scene.anyFrame())
                                                : static_cast<double>(_scene.anyNumber());
        positions.insert(key, QPointF(frame, static_cast<double>(_scene.anyNumber())));
    }
    return new MoveCurveKeysCommand(positions, finalStep);
}

QUndoCommand* AnyCommand::Drag::_moveTangents(bool finalStep) {
    _side = _side.value_or(_scene.anySide());
    const float frames = _scene.anyNumber();
    return new MoveTangentCommand(toSet(_keys), *_side, frames, _scene.anyNumber(), finalStep);
}

QUndoCommand* AnyCommand::Drag::_changeRange(bool finalStep) {
    ZT::AnimationMarkers* const markers = &_scene.markers();
    const unsigned int target = _scene.anyFrame();
    switch (_kind) {
    case 2:
        return new ChangeRangeCommand(markers, _frames, target, _scene.anyFrame(), finalStep);
    case 3:
        return new MoveRangeCommand(markers, _frames, _rangeStart, _rangeEnd, target, finalStep);
    default:
        return new StretchRangeCommand(markers, _frames, _rangeStart, _rangeEnd, target, finalStep,
                                       _scene.yesOrNo() ? StretchSide::start : StretchSide::end);
    }
}
