#pragma once

#include "model/AnimationMarkers.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"
#include "model/EditableMotionCurve.h"

#include <QPointer>
#include <QUndoCommand>

#include <functional>
#include <memory>
#include <vector>

/// A small animation of two curves, with a key outside of them and a history of one command: what operations
/// are tried on while something fails. Keys are told apart by the order in which they were made, so that two
/// scenes compare.
class FaultScene {
public:
    using Curve = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;

    FaultScene();
    FaultScene(const FaultScene&) = delete;
    FaultScene& operator=(const FaultScene&) = delete;
    /// Destroys the command, the animation, and then the keys that are left.
    ~FaultScene();

    ZT::EditableAnimation& animation() const { return *_animation; }
    ZT::AnimationMarkers& markers() const { return *_animation->getMarkers(); }
    Curve& curve(std::size_t i = 0) const { return *_curves.at(i); }
    /// The first four stand in the first curve at the frames 2, 4, 6 and 8, the next four so in the second,
    /// the rest nowhere.
    Key* key(std::size_t i) const { return _keys.at(i); }
    bool isAlive(std::size_t i) const { return !_watched.at(i).isNull(); }
    /// How many of its keys have died.
    int deaths() const;
    static constexpr std::size_t keysOfACurve = 4;
    static constexpr std::size_t firstOutside = 2 * keysOfACurve;
    static constexpr std::size_t keyCount = firstOutside + 3;

    /// The keys of both curves.
    Curve::KeysSet standing() const;
    template <class Value>
    QMap<Key*, Value> forEachStanding(const std::function<Value(Key*)>& value) const {
        QMap<Key*, Value> map;
        for (Key* const key : standing()) {
            map.insert(key, value(key));
        }
        return map;
    }

    /// An operation was given a key by the curve: it is not lost outside.
    void receive(Key* key) { _received.push_back(key); }
    /// A key that a slot makes: destroyed with the scene, unless it died before.
    void watch(Key* key) { _watched.emplace_back(key); }
    std::unique_ptr<QUndoCommand> command;

    /// All there is to see, with keys by their numbers.
    QString state() const;

    /// What is wrong after an operation, also a failed one: empty when frames ascend, keys, curves and
    /// lookups agree, no batch is open, and, when no command is there that may own keys, none is
    /// owned by nobody.
    QString fault() const;

private:
    QString _faultIn(const Curve& curve) const;
    bool _isHeld(const Key* key) const;

    std::unique_ptr<ZT::EditableAnimation> _animation;
    std::vector<Curve*> _curves;
    std::vector<Key*> _keys;
    std::vector<QPointer<Key>> _watched;
    std::vector<Key*> _received;
};
