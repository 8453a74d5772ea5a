#pragma once

#include "AnimationState.h"
#include "Draw.h"
#include "KeyCensus.h"
#include "Soundness.h"
#include "model/EditableAnimation.h"
#include "model/EditableAnimationLayer.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <vector>

/// A random animation of 1 to 6 layers with 0 to 60 keys each; beside it a curve that no layer holds and keys
/// that no curve holds, whose owner is the scene. Curves and keys are drawn by their position: a smaller case
/// of the same kind then does the same.
class LawScene {
public:
    using Curve = ZT::EditableMotionCurve;
    using Key = ZT::EditableMotionCurveKey;
    using Keys = std::vector<Key*>;
    using KeysIndexMap = Curve::KeysIndexMap;

    explicit LawScene(Draw::Automatic automatic = Draw::Automatic::yes)
        : _automatic(automatic)
        , _animation(std::make_unique<ZT::EditableAnimation>())
        , _stray(std::make_unique<Curve>()) {
        for (int layers = 1 + Draw::size(5); layers > 0; --layers) {
            auto* const layer = new ZT::EditableAnimationLayer;
            _animation->push_back(layer);
            layer->setActuatorName(QString::fromStdString(Draw::name()));
            layer->setMute(Draw::yesOrNo());
            _curves.push_back(layer->getCurve());
            _fill(*layer->getCurve(), 60);
        }
        _curves.push_back(_stray.get());
        _fill(*_stray, 4);
        for (int i = 0; i < 2; ++i) {
            _loose.push_back(newKey());
        }
        const unsigned int start = Draw::frame();
        markers().setRangeEndIndex(std::max(start, Draw::frame()));
        markers().setRangeStartIndex(start);
    }
    LawScene(const LawScene&) = delete;
    LawScene& operator=(const LawScene&) = delete;
    ~LawScene() { end(); }

    ZT::EditableAnimation& animation() const { return *_animation; }
    ZT::AnimationMarkers& markers() const { return *_animation->getMarkers(); }
    Draw::Automatic automatic() const { return _automatic; }
    /// Those of the layers, then the one that no layer holds.
    const std::vector<Curve*>& curves() const { return _curves; }
    AnimationState state() const { return AnimationState(_curves, markers()); }

    /// Drops all curves and the keys that the scene owns.
    void end() {
        _curves.clear();
        _animation.reset();
        _stray.reset();
        for (Keys* const keys : {&_loose, &_unused}) {
            qDeleteAll(*keys);
            keys->clear();
        }
    }

    /// The scene owns the key from now on, unless it is null.
    void own(Key* key) {
        if (key != nullptr) {
            _loose.push_back(key);
        }
    }
    /// Lets go of the keys that a curve has taken in.
    void letGoOfHeldKeys() {
        const auto isHeld = [](const Key* key) { return key->getParentCurve() != nullptr; };
        _loose.erase(std::remove_if(_loose.begin(), _loose.end(), isHeld), _loose.end());
    }
    /// Whether the scene owns the key.
    bool owns(const Key* key) const { return std::find(_loose.begin(), _loose.end(), key) != _loose.end(); }
    /// A key that the scene owns, or null if there is none; the scene stays its owner.
    Key* looseKey() const { return _loose.empty() ? nullptr : Draw::oneOf(_loose); }

    /// A new key that belongs to whoever asked for it.
    ///
    /// Maps hold keys in the order of their addresses. Keys are therefore made in advance and drawn: a case
    /// that is played again has the same order, wherever its keys are.
    Key* newKey() {
        if (_unused.empty()) {
            constexpr int batch = 400; // Mostly all that a case needs.
            std::generate_n(std::back_inserter(_unused), batch, [] { return new Key; });
            std::sort(_unused.begin(), _unused.end(), std::less<>());
        }
        const auto drawn = _unused.begin() + Draw::below(static_cast<std::ptrdiff_t>(_unused.size()));
        Key* const key = *drawn;
        _unused.erase(drawn);
        const Draw::Record record = Draw::record(_automatic);
        key->_restoreValue(record.value);
        key->setTangentType(ZT::TangentSide::left, record.leftTangentType);
        key->setTangentType(ZT::TangentSide::right, record.rightTangentType);
        key->_restoreHandles(record);
        _constrain(*key);
        return census.add(key);
    }

    Curve* anyCurve() const { return Draw::oneOf(_curves); }

    Keys heldKeys() const {
        Keys keys;
        for (Curve* const curve : _curves) {
            for (const auto element : *curve) {
                keys.push_back(element.second);
            }
        }
        return keys;
    }

    /// A frame, often one at which some key stands.
    unsigned int anyFrame() const {
        const Keys held = heldKeys();
        return held.empty() || Draw::yesOrNo() ? Draw::frame() : ZT::index(Draw::oneOf(held));
    }

    /// Keys of any curves: none, a few, a run of neighbours, or each n-th; now and then with null or a key
    /// that no curve holds among them.
    Keys someKeys() const {
        const Keys held = heldKeys();
        Keys keys;
        const int kind = held.empty() ? 0 : Draw::below(8);
        if (kind < 3) {
            for (int count = held.empty() ? 0 : Draw::below(5); count > 0; --count) {
                keys.push_back(Draw::oneOf(held));
            }
        } else if (kind < 6) {
            const std::size_t first = Draw::below(held.size());
            const std::size_t count = Draw::below(std::min<std::size_t>(held.size() - first, 20U) + 1U);
            keys.assign(held.begin() + static_cast<std::ptrdiff_t>(first),
                        held.begin() + static_cast<std::ptrdiff_t>(first + count));
        } else {
            const std::size_t step = 1U + Draw::below<std::size_t>(4U);
            for (std::size_t i = Draw::below(step); i < held.size(); i += step) {
                keys.push_back(held[i]);
            }
        }
        if (Draw::rarely(8)) {
            keys.push_back(nullptr);
        }
        if (Draw::rarely(8)) {
            keys.push_back(looseKey());
        }
        return keys;
    }

    /// What holds after every operation that recomputes the automatic handles that it bears upon.
    void requireSound() const {
        requireIndices();
        for (Curve* const curve : _curves) {
            Soundness::requireAutomaticHandles(*curve);
        }
    }

    /// What holds after every operation.
    void requireIndices() const {
        for (Curve* const curve : _curves) {
            Soundness::requireIndex(*curve);
            Soundness::requireOutsideBatch(*curve);
        }
        census.requireOneCurveEach(_curves);
        unsigned int greatest = 0;
        for (ZT::EditableAnimationLayer* const layer : *_animation) {
            greatest = std::max(greatest, layer->getCurve()->getGreaterIndex());
        }
        RC_ASSERT(_animation->getGreaterIndex() == greatest);
    }

    KeyCensus census;

private:
    void _fill(Curve& curve, int greatest) {
        for (int count = Draw::size(greatest); count > 0; --count) {
            const unsigned int frame = Draw::frame();
            if (curve.isIndexAvailable(frame)) {
                curve.insert(frame, newKey());
            }
        }
        curve.updateBezierAutoTangents();
    }

    /// Gives a key flags: some that act, and some that other types keep from acting.
    void _constrain(Key& key) const {
        const int flags = Draw::below(16);
        if (flags < 12) {
            return;
        }
        key.setSmooth(flags % 2 == 0);
        key.setSymmetrical(flags >= 14);
        if (Draw::rarely(3)) {
            key.setTangentType(Draw::side(), Draw::type(_automatic));
        }
    }

    Draw::Automatic _automatic;
    std::unique_ptr<ZT::EditableAnimation> _animation;
    std::unique_ptr<Curve> _stray;
    std::vector<Curve*> _curves;
    Keys _loose;  ///< the keys that the scene owns
    Keys _unused; ///< keys to come
};
