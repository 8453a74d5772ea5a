#pragma once

#include "LawScene.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/StretchRangeCommand.h"

#include <QPointer>
#include <QSet>
#include <QUndoCommand>

#include <utility>
#include <vector>

/// One drag: commands of one kind on the same keys, from the same range, as an editor makes them while the
/// mouse moves. Keys that died since the drag began are null.
class AnyDrag {
public:
    using Key = LawScene::Key;
    enum class Kind { keys, tangents, changeRange, moveRange, stretchRange };

    explicit AnyDrag(LawScene& scene)
        : _scene(scene)
        , _kind(static_cast<Kind>(Draw::below(5)))
        , _side(Draw::side())
        , _stretchSide(Draw::yesOrNo() ? ZT::AnimCmd::StretchSide::start : ZT::AnimCmd::StretchSide::end)
        , _rangeStart(Draw::rarely(6) ? Draw::frame() : scene.markers().rangeStartIndex())
        , _rangeEnd(Draw::rarely(6) ? Draw::frame() : scene.markers().rangeEndIndex()) {
        const bool isStale = Draw::rarely(6);
        for (Key* const key : scene.someKeys()) {
            const unsigned int given = isStale && Draw::yesOrNo() ? Draw::frame() : ZT::index(key);
            _keys.emplace_back(key, given);
        }
    }

    Kind kind() const { return _kind; }
    KeyCensus::Keys keys() const {
        KeyCensus::Keys keys;
        for (const auto& [key, frame] : _keys) {
            keys.insert(key.data());
        }
        return keys;
    }

    QUndoCommand* step(bool isFinal) {
        using namespace ZT::AnimCmd;
        ZT::AnimationMarkers* const markers = &_scene.markers();
        const unsigned int to = _target();
        switch (_kind) {
        case Kind::keys:
            return _moveKeys(isFinal);
        case Kind::tangents:
            return _moveTangents(isFinal);
        case Kind::changeRange:
            return new ChangeRangeCommand(markers, _frames(), to, Draw::frame(), isFinal);
        case Kind::moveRange:
            return new MoveRangeCommand(markers, _frames(), _rangeStart, _rangeEnd, to, isFinal);
        case Kind::stretchRange:
            break;
        }
        return new StretchRangeCommand(markers, _frames(), _rangeStart, _rangeEnd, to, isFinal, _stretchSide);
    }

private:
    /// Mostly some frames away from where the range begins.
    unsigned int _target() const {
        return Draw::rarely(3) ? Draw::frame() : _rangeStart + Draw::below(41U) - Draw::below(21U);
    }

    ZT::EditableMotionCurve::KeysIndexMap _frames() const {
        ZT::EditableMotionCurve::KeysIndexMap frames;
        for (const auto& [key, frame] : _keys) {
            frames.insert(key.data(), frame);
        }
        return frames;
    }

    QUndoCommand* _moveKeys(bool isFinal) const {
        ZT::EditableMotionCurve::KeyPosMap positions;
        const bool isTogether = Draw::yesOrNo();
        const bool keepsValues = Draw::yesOrNo();
        const double by = Draw::below(41) - 20;
        for (const auto& [key, frame] : _keys) {
            const float drawn = Draw::number();
            const float value = keepsValues && key != nullptr ? key->getValue() : drawn;
            positions.insert(key.data(), QPointF(isTogether ? frame + by : Draw::position(), double{value}));
        }
        return new ZT::AnimCmd::MoveCurveKeysCommand(positions, isFinal);
    }

    QUndoCommand* _moveTangents(bool isFinal) const {
        using ZT::AnimCmd::MoveTangentCommand;
        const auto [x, y] = Draw::handle();
        if (_keys.size() == 1) {
            return new MoveTangentCommand(_keys.front().first.data(), _side, x, y, isFinal);
        }
        QSet<Key*> keys;
        for (const auto& [key, frame] : _keys) {
            keys.insert(key.data());
        }
        return new MoveTangentCommand(keys, _side, x, y, isFinal);
    }

    LawScene& _scene;
    Kind _kind;
    ZT::TangentSide _side; ///< for all steps: undo leads back the handles of the first step's side only
    ZT::AnimCmd::StretchSide _stretchSide;
    unsigned int _rangeStart;
    unsigned int _rangeEnd;
    std::vector<std::pair<QPointer<Key>, unsigned int>> _keys; ///< with the frames that the drag believes in
};
