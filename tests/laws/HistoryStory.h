#pragma once

#include "AnyCommand.h"
#include "AnyDrag.h"

#include <QUndoStack>

#include <algorithm>
#include <deque>
#include <iterator>
#include <memory>
#include <string>

/// A random history of a random animation that is walked at random. At each place of the history it knows the
/// state that belongs there, and which keys the entry that leads there has moved in or out of curves.
class HistoryStory {
public:
    explicit HistoryStory(Draw::Automatic automatic)
        : _scene(automatic)
        , _history(std::make_unique<QUndoStack>()) {
        if (Draw::rarely(4)) {
            _history->setUndoLimit(1 + Draw::below(6));
        }
        _start();
        _scene.requireSound();
    }

    void goOn() {
        switch (Draw::below(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return _push(AnyCommand(_scene).make());
        case 4:
            // The same keys once more, while their last drag may still be open.
            return _drag != nullptr ? _dragOn() : goOn();
        case 5:
        case 6:
        case 7:
        case 8:
            _drag = std::make_unique<AnyDrag>(_scene);
            return _dragOn();
        case 9:
            return _walkTo(Draw::below(_history->count() + 1));
        case 10:
            return _walkTo(std::max(0, _history->index() - 1 - Draw::below(2)));
        default:
            return Draw::rarely(6) ? _clear() : _walkTo(_history->count());
        }
    }

    void end() {
        _walkTo(0);
        _walkTo(_history->count());
        _walkTo(Draw::below(_history->count() + 1));
        if (Draw::yesOrNo()) {
            _clear();
            _history.reset();
        }
        _scene.end();
        _history.reset();
        RC_ASSERT(_scene.census.alive().empty());
    }

private:
    /// What belongs to one index of the history.
    struct Place {
        AnimationState state;
        KeyCensus::Keys moved; ///< what the entry that leads here has put into curves or taken out
        /// A drag that leads here or further back was not redone so far, which may make something else of it.
        bool isOpen = false;
    };

    void _start() {
        _places.clear();
        _places.push_back({_scene.state(), {}, false});
        _isOrigin = true;
        _handlesDiffered = false;
        _automaticKeys.clear();
        _places.front().state.addAutomaticKeys(_automaticKeys);
    }

    void _clear() {
        _history->clear();
        _start();
        _requireOwners();
    }

    Place& _here() { return _places[static_cast<std::size_t>(_history->index())]; }

    void _push(QUndoCommand* command) {
        RC_LOG() << "at " << _history->index() << ": " << command->text().toStdString() << std::endl;
        const int index = _history->index();
        const KeyCensus::Keys held = KeyCensus::heldBy(_scene.curves());
        KeyCensus::Keys moved = _handedOver();
        const QUndoCommand* const top = index > 0 ? _history->command(index - 1) : nullptr;
        // What came back within the tolerance is what the command has found.
        _here().state = _scene.state();
        _places.erase(_places.begin() + index + 1, _places.end());
        _history->push(command);
        _addMoved(moved, held);
        if (top != nullptr && _history->command(_history->index() - 1) == top) {
            _places.back().state = _scene.state();
        } else {
            const bool isOpen = _places.back().isOpen;
            _places.push_back({_scene.state(), {}, isOpen});
        }
        _places.back().moved.insert(moved.begin(), moved.end());
        while (_places.size() > static_cast<std::size_t>(_history->count()) + 1U) {
            _places.pop_front();
            _places.front().moved.clear();
            _isOrigin = false;
        }
        _places.back().state.addAutomaticKeys(_automaticKeys);
        _requireAll();
    }

    /// Steps of one drag, the last of which may leave it open.
    ///
    /// A drag of keys is redone as its steps have made it. A merged drag of handles or of the range redoes
    /// the last step from where the first began: what it makes then may differ, and from then on it is what
    /// belongs to the place. Undone all of them lead back to where they began, redone before or not.
    void _dragOn() {
        const int steps = 1 + Draw::below(4);
        const bool isOfKeys = _drag->kind() == AnyDrag::Kind::keys;
        // A step on other keys may join an open drag of handles, and its own handles are lost to undo.
        const bool endsOpen = _drag->kind() != AnyDrag::Kind::tangents && Draw::rarely(3);
        for (int step = 1; step <= steps; ++step) {
            _push(_drag->step(step == steps && !endsOpen));
        }
        if (isOfKeys) {
            return;
        }
        if (Draw::yesOrNo()) {
            _here().isOpen = true;
            return;
        }
        const bool someFailed = !_failedKeys().empty();
        const AnimationState made = _scene.state();
        _step(-1);
        _move(&QUndoStack::redo);
        if (!someFailed && _failedKeys().empty()) {
            _requireRedone(made);
        }
        _here().state = _scene.state();
        _here().state.addAutomaticKeys(_automaticKeys);
        _here().isOpen = std::prev(_places.end(), 2)->isOpen;
        _requireAll();
    }

    /// A drag in which all keys found their frames gives them the same ones again.
    void _requireRedone(const AnimationState& made) {
        AnimationState::Keys loose;
        if (_drag->kind() == AnyDrag::Kind::tangents) {
            const KeyCensus::Keys keys = _drag->keys();
            loose.insert(keys.begin(), keys.end());
        }
        if (_handlesDiffered) {
            loose.insert(_automaticKeys.begin(), _automaticKeys.end());
        }
        _requireEqual(_scene.state(), made, loose, "a drag is redone as it was made");
    }

    void _walkTo(int target) {
        while (_history->index() != target) {
            _step(_history->index() < target ? 1 : -1);
        }
    }

    void _step(int direction) {
        RC_LOG() << "at " << _history->index() << (direction > 0 ? ": redo" : ": undo") << std::endl;
        _move(direction > 0 ? &QUndoStack::redo : &QUndoStack::undo);
        if (_here().isOpen) {
            return _requireAll();
        }
        const AnimationState state = _scene.state();
        const AnimationState& expected = _here().state;
        const bool isBeginning = _history->index() == 0 && _isOrigin;
        // Automatic handles may come back a little different within their tolerance. What is then made of
        // them by fixing them differs too; but never what was there at the beginning.
        const bool isLoose = _handlesDiffered && !isBeginning;
        _requireEqual(state, expected, isLoose ? _automaticKeys : AnimationState::Keys(),
                      "each place of the history has its state");
        _handlesDiffered = _handlesDiffered || !state.hasSameAutomaticHandles(expected);
        _requireAll();
    }

    void _move(void (QUndoStack::*step)()) {
        const KeyCensus::Keys held = KeyCensus::heldBy(_scene.curves());
        const int from = _history->index();
        (_history.get()->*step)();
        KeyCensus::Keys moved;
        _addMoved(moved, held);
        const auto entry = static_cast<std::size_t>(std::max(from, _history->index()));
        _places[entry].moved.insert(moved.begin(), moved.end());
    }

    /// Keys that are in no curve and not the scene's, and that no entry of the history had so far: they come
    /// with the next command.
    KeyCensus::Keys _handedOver() const {
        KeyCensus::Keys keys;
        for (KeyCensus::Key* const key : _scene.census.outside()) {
            if (!_scene.owns(key) && !_isMoved(key)) {
                keys.insert(key);
            }
        }
        return keys;
    }

    bool _isMoved(KeyCensus::Key* key) const {
        return std::any_of(_places.begin(), _places.end(),
                           [key](const Place& place) { return place.moved.count(key) != 0; });
    }

    void _addMoved(KeyCensus::Keys& moved, const KeyCensus::Keys& heldBefore) const {
        const KeyCensus::Keys held = KeyCensus::heldBy(_scene.curves());
        std::set_symmetric_difference(held.begin(), held.end(), heldBefore.begin(), heldBefore.end(),
                                      std::inserter(moved, moved.end()));
    }

    std::set<ZT::EditableMotionCurveKey*> _failedKeys() const {
        const auto* const command = dynamic_cast<const ZT::AnimCmd::ChangeRangeCommand*>(
            _history->index() > 0 ? _history->command(_history->index() - 1) : nullptr);
        return command == nullptr
                   ? KeyCensus::Keys()
                   : KeyCensus::Keys(command->failedKeys().begin(), command->failedKeys().end());
    }

    void _requireAll() {
        // Where keys stand elsewhere than when a command was built, its undo gives back automatic handles
        // that were right then.
        _here().isOpen ? _scene.requireIndices() : _scene.requireSound();
        _requireOwners();
    }

    /// Each living key is in one curve, or is the scene's, or is kept by an entry that has moved it.
    void _requireOwners() {
        const KeyCensus::Keys living = _scene.census.alive();
        for (Place& place : _places) {
            // A new key may be made where a dead one was.
            for (auto key = place.moved.begin(); key != place.moved.end();) {
                key = living.count(*key) != 0 ? std::next(key) : place.moved.erase(key);
            }
        }
        for (KeyCensus::Key* const key : _scene.census.outside()) {
            RC_ASSERT(_scene.owns(key) != _isMoved(key));
        }
    }

    void _requireEqual(const AnimationState& state, const AnimationState& expected,
                       const AnimationState::Keys& loose, const char* law) const {
        const std::string difference = state.differenceFrom(expected, loose);
        if (!difference.empty()) {
            RC_FAIL(std::string(law) + ", but at " + std::to_string(_history->index()) + " of " + _texts() +
                    ":\n" + difference);
        }
    }

    std::string _texts() const {
        std::string texts = std::to_string(_history->count());
        for (int i = 0; i < _history->count(); ++i) {
            texts += "\n  " + _history->text(i).toStdString();
        }
        return texts;
    }

    LawScene _scene;
    std::unique_ptr<QUndoStack> _history; ///< refers to the scene
    std::unique_ptr<AnyDrag> _drag;       ///< the last one
    std::deque<Place> _places;            ///< by index of the history
    bool _isOrigin = true;                ///< the first place is where all commands were built upon
    bool _handlesDiffered = false;
    AnimationState::Keys _automaticKeys; ///< those that ever had an automatic handle
};
