#pragma once

#include "fuzz/support/EditScene.h"

#include <QUndoCommand>

#include <optional>

/// Commands of every kind on keys that the scene's bytes choose.
namespace AnyCommand {

/// One that never merges.
QUndoCommand* single(EditScene& scene);

/// The steps of one drag: all of one kind, on the same keys and the same range.
class Drag {
public:
    explicit Drag(EditScene& scene);

    QUndoCommand* step(bool finalStep);

private:
    using Key = EditScene::Key;

    QUndoCommand* _moveKeys(bool finalStep);
    QUndoCommand* _moveTangents(bool finalStep);
    QUndoCommand* _changeRange(bool finalStep);

    EditScene& _scene;
    unsigned int _kind;
    EditScene::Keys _keys;
    ZT::EditableMotionCurve::KeysIndexMap _frames;
    unsigned int _rangeStart;
    unsigned int _rangeEnd;
    std::optional<ZT::TangentSide> _side; ///< undo leads back the handles of the first step's side only
};

} // namespace AnyCommand
