#pragma once

#include "tests/faults/FaultScene.h"

#include <QObject>

/// What a slot throws.
struct SlotFailure {};

/// Listens to every signal of a scene and throws at one of them.
class SlotThrower {
public:
    /// @p emission: the number of the emission to throw at, counted from 1; each one behind it is let pass,
    /// or thrown at as well.
    enum class AfterThat { pass, throwToo };
    SlotThrower(const FaultScene& scene, int emission, AfterThat afterThat)
        : _left(emission)
        , _afterThat(afterThat) {
        using Animation = ZT::EditableAnimation;
        using Layer = ZT::EditableAnimationLayer;
        using Key = ZT::EditableMotionCurveKey;
        using Curve = ZT::EditableMotionCurve;
        using Markers = ZT::AnimationMarkers;
        for (std::size_t i = 0; i < FaultScene::keyCount; ++i) {
            _listenTo(scene.key(i), &Key::valueChanged, &Key::tangentsChanged, &Key::smoothChanged,
                      &Key::symmetricalChanged, &Key::indexChanged);
        }
        for (std::size_t i = 0; i < 2; ++i) {
            _listenTo(&scene.curve(i), &Curve::keysChanged, &Curve::keyAboutToBeRemoved, &Curve::keyAdded,
                      &Curve::curveCleared, &Curve::greaterIndexChanged);
        }
        for (const ZT::EditableAnimationLayer* const layer : scene.animation()) {
            _listenTo(layer, &Layer::nameChanged, &Layer::muteChanged, &Layer::curveChanged,
                      &Layer::greaterIndexChanged);
        }
        _listenTo(&scene.animation(), &Animation::layersChanged, &Animation::greaterIndexChanged);
        _listenTo(&scene.markers(), &Markers::selectedIndexChanged, &Markers::startIndexChanged,
                  &Markers::endIndexChanged, &Markers::rangeStartIndexChanged, &Markers::rangeEndIndexChanged,
                  &Markers::rangeVisibilityChanged);
    }

    bool hasThrown() const noexcept { return _left <= 0; }

private:
    template <class Sender, class... Signals>
    void _listenTo(const Sender* sender, Signals... heard) {
        (QObject::connect(sender, heard, &_context, [this] { _hear(); }), ...);
    }

    void _hear() {
        --_left;
        if (_left == 0 || (_left < 0 && _afterThat == AfterThat::throwToo)) {
            throw SlotFailure();
        }
    }

    int _left;
    AfterThat _afterThat;
    QObject _context;
};
