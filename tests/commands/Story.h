#pragma once

#include "AnyKey.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "commands/StretchRangeCommand.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <vector>

namespace Harness {

namespace AnimCmd = ZT::AnimCmd;

/// A random animation and a history that is walked at random; every state seen is compared with the one that
/// was recorded at the same place of the history.
class Story {
    using CurvesKeysMap = QMap<Curve*, KeysIndexMap>;

public:
    explicit Story(Automatic automatic)
        : _automatic(automatic)
        , _scene(*rc::gen::inRange(1, 4)) {
        for (Curve* const curve : _scene.curves) {
            const int count = *rc::gen::inRange(0, 21);
            for (int i = 0; i < count; ++i) {
                if (const unsigned int frame = *anyFrame(); curve->isIndexAvailable(frame)) {
                    curve->insert(frame, newKey());
                }
            }
            curve->updateBezierAutoTangents();
        }
        const unsigned int start = *anyFrame();
        _scene.setRange(start, std::max(start, *anyFrame()));
        _states.push_back(now());
    }

    void goOn() {
        switch (*rc::gen::inRange(0, 13)) {
        case 0:
            return push(new AnimCmd::AddCurveKeysCommand(anyKeysToInsert()));
        case 1:
            return push(new AnimCmd::AddCurveKeysCommand(newKey(), anyCurve(), *anyFrame()));
        case 2:
            return push(new AnimCmd::RemoveCurveKeysCommand(someKeys().values()));
        case 3:
            return push(new AnimCmd::ReplaceCurveKeysCommand(someKeys().values(), anyKeysToInsert()));
        case 4:
            return push(new AnimCmd::ReplaceCurveKeysCommand(anyKeysToRemove(), anyKeysToInsert()));
        case 5:
            return push(new AnimCmd::ChangeInterpTypeCommand(anyTangents(), *anyType(_automatic)));
        case 6:
            return push(new AnimCmd::ChangeTangentParamCommand(someKeys(), *anyType(_automatic), *yesOrNo(),
                                                               *yesOrNo()));
        case 7:
            return *yesOrNo() ? push(new AnimCmd::ChangeSmoothnessCommand(someKeys(), *yesOrNo()))
                              : push(new AnimCmd::ChangeSymmetryCommand(someKeys(), *yesOrNo()));
        case 8:
            return dragKeys();
        case 9:
            return dragTangents();
        case 10:
            return dragRange();
        default:
            return walkTo(*rc::gen::inRange(0, _scene.stack->count() + 1));
        }
    }

    void end() {
        walkTo(0);
        walkTo(_scene.stack->count());
        walkTo(*rc::gen::inRange(0, _scene.stack->count() + 1));
        const bool historyFirst = *yesOrNo();
        if (historyFirst) {
            _scene.stack.reset();
        }
        _scene.animation.reset();
        _scene.stack.reset();
        RC_ASSERT(alive(_allKeys) == 0);
    }

private:
    Key* newKey() {
        Key* const key = anyKey(_automatic);
        _allKeys.emplace_back(key);
        return key;
    }

    /// By position: shrinking replays what was generated in another scene.
    Curve* anyCurve() const { return _scene.curves[*rc::gen::inRange<std::size_t>(0, _scene.curves.size())]; }

    Keys heldKeys() const {
        Keys keys;
        for (const Curve* const curve : _scene.curves) {
            for (const auto element : *curve) {
                keys.push_back(const_cast<Key*>(element.second));
            }
        }
        return keys;
    }

    QSet<Key*> someKeys() const {
        QSet<Key*> result;
        const bool all = *rc::gen::weightedElement<bool>({{4, false}, {1, true}});
        for (Key* const key : heldKeys()) {
            if (all || *rc::gen::weightedElement<bool>({{2, false}, {1, true}})) {
                result.insert(key);
            }
        }
        return result;
    }

    CurvesKeysMap anyKeysToInsert() {
        CurvesKeysMap result;
        const int count = *rc::gen::inRange(0, 5);
        for (int i = 0; i < count; ++i) {
            Curve* const curve = anyCurve();
            result[curve].insert(newKey(), *anyFrame());
        }
        return result;
    }

    CurvesKeysMap anyKeysToRemove() const {
        CurvesKeysMap result;
        for (Key* const key : someKeys()) {
            const bool stale = *rc::gen::weightedElement<bool>({{4, false}, {1, true}});
            result[key->getParentCurve()].insert(key, ZT::index(key) + (stale ? 1U : 0U));
        }
        return result;
    }

    QMultiMap<Key*, Side> anyTangents() const {
        QMultiMap<Key*, Side> result;
        for (Key* const key : someKeys()) {
            const int sides = *rc::gen::inRange(1, 4);
            for (const Side side : {Side::left, Side::right}) {
                if ((sides & (1 << static_cast<int>(side))) != 0) {
                    result.insert(key, side);
                }
            }
        }
        return result;
    }

    void dragKeys() {
        const QSet<Key*> keys = someKeys();
        const bool together = *yesOrNo();
        QMap<Key*, QPointF> from;
        for (Key* const key : keys) {
            from.insert(key, QPointF(ZT::index(key), static_cast<double>(key->getValue())));
        }
        drag([&](bool finalCommand) {
            Curve::KeyPosMap positions;
            const int byFrames = *rc::gen::inRange(-10, 11);
            const bool inTimeOnly = *yesOrNo();
            for (auto entry = from.cbegin(); entry != from.cend(); ++entry) {
                const double x = together ? entry->x() + byFrames : static_cast<double>(*anyFrame());
                positions.insert(entry.key(),
                                 QPointF(x, inTimeOnly ? entry->y() : static_cast<double>(*anyValue())));
            }
            return new AnimCmd::MoveCurveKeysCommand(positions, finalCommand);
        });
    }

    void dragTangents() {
        const QSet<Key*> keys = someKeys();
        const Side side = *anySide(); // Undo of a drag leads back its own side only.
        drag([&](bool finalCommand) {
            const float first = *anyCoordinate();
            return new AnimCmd::MoveTangentCommand(keys, side, first, *anyCoordinate(), finalCommand);
        });
    }

    void dragRange() {
        const QSet<Key*> keys = someKeys();
        KeysIndexMap given;
        for (Key* const key : keys) {
            given.insert(key, ZT::index(key));
        }
        ZT::AnimationMarkers* const markers = &_scene.markers();
        const unsigned int start = markers->rangeStartIndex();
        const unsigned int end = markers->rangeEndIndex();
        const int kind = *rc::gen::inRange(0, 3);
        drag([&](bool finalCommand) -> QUndoCommand* {
            const unsigned int to = *anyFrame();
            switch (kind) {
            case 0:
                return new AnimCmd::ChangeRangeCommand(markers, given, to, *anyFrame(), finalCommand);
            case 1:
                return new AnimCmd::MoveRangeCommand(markers, given, start, end, to, finalCommand);
            default:
                return new AnimCmd::StretchRangeCommand(
                    markers, given, start, end, to, finalCommand,
                    *rc::gen::element(AnimCmd::StretchSide::end, AnimCmd::StretchSide::start));
            }
        });
    }

    /// One drag of some steps, which becomes one entry. A redo applies the last step's targets at once, which
    /// may leave keys elsewhere than the single steps did when keys met on the way; the state that counts for
    /// the entry is therefore that of a redo.
    template <class MakeStep>
    void drag(MakeStep makeStep) {
        const int steps = *rc::gen::inRange(1, 5);
        const int before = _scene.stack->index();
        for (int step = 1; step <= steps; ++step) {
            _scene.stack->push(makeStep(step == steps));
            RC_ASSERT(_scene.stack->index() == before + 1);
        }
        _states.resize(static_cast<std::size_t>(before) + 1, _states.front());
        _scene.stack->undo();
        compare();
        _scene.stack->redo();
        _states.push_back(now());
    }

    void push(QUndoCommand* command) {
        _states.resize(static_cast<std::size_t>(_scene.stack->index()) + 1, _states.front());
        _scene.stack->push(command);
        _states.push_back(now());
    }

    void walkTo(int target) {
        while (_scene.stack->index() != target) {
            _scene.stack->index() < target ? _scene.stack->redo() : _scene.stack->undo();
            compare();
        }
    }

    /// Keys that a range command could not place are part of the state as long as it is done.
    State now() const {
        State state(*_scene.animation);
        std::set<Key*> failed;
        for (int i = 0; i < _scene.stack->index(); ++i) {
            if (const auto* range =
                    dynamic_cast<const AnimCmd::ChangeRangeCommand*>(_scene.stack->command(i))) {
                failed.insert(range->failedKeys().begin(), range->failedKeys().end());
            }
        }
        for (const Key* const key : failed) {
            if (key->getParentCurve() == nullptr) {
                state.add(*key);
            }
        }
        return state;
    }

    void compare() {
        const auto index = static_cast<std::size_t>(_scene.stack->index());
        const State& recorded = _states[index];
        const State current = now();
        // Automatic handles may come back a little different within their tolerance. Then a redo that fixes
        // them makes other handles of them; undoing everything gives back what was there all the same.
        const bool holds = _handlesDiffered && index != 0 ? current.agreesWithoutFixedHandles(recorded)
                                                          : current == recorded;
        _handlesDiffered = _handlesDiffered || current.automaticHandles() != recorded.automaticHandles();
        if (!holds) {
            RC_FAIL(QString("at %1 of %2 (%3):\n%4\ninstead of\n%5")
                        .arg(index)
                        .arg(_scene.stack->count())
                        .arg(_scene.stack->text(static_cast<int>(index)), current.text(), recorded.text())
                        .toStdString());
        }
    }

    Automatic _automatic;
    Scene _scene;
    std::vector<QPointer<Key>> _allKeys;
    std::vector<State> _states; ///< by index of the history
    bool _handlesDiffered = false;
};

} // namespace Harness
