#pragma once

#include "tests/support/SignalRecorder.h"

#include <QPointer>
#include <QUndoCommand>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

/// What the signal reference knows an operation by: where it is tried, how, and what it says.
namespace Signals {

using Animation = ZT::EditableAnimation;
using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Layer = ZT::EditableAnimationLayer;
using Markers = ZT::AnimationMarkers;

/// Keys a, b and c in ascending order of addresses at the frames 2, 6 and 10 of a layer's curve, with
/// "bezier" tangents; x is in no curve.
struct Scene {
    Scene() {
        VQ::Math::Interpolation::Key record;
        record.leftTangentType = VQ::Math::Interpolation::InterpolationType::bezier;
        record.rightTangentType = record.leftTangentType;
        for (int i = 0; i < 4; ++i) {
            keys.push_back(new Key(record));
        }
        std::sort(keys.begin(), keys.end(), std::less<>());
        VQ::Animation::Animation plain;
        plain.push_back(new VQ::Animation::AnimationLayer);
        animation = std::make_unique<Animation>(plain);
        layer = *animation->begin();
        curve = layer->getCurve();
        const unsigned int frames[] = {2, 6, 10};
        for (std::size_t i = 0; i < 3; ++i) {
            curve->insert(frames[i], keys[i]);
        }
        animation->getMarkers()->setRangeStartIndex(2);
        animation->getMarkers()->setRangeEndIndex(8);
        watched.assign(keys.begin(), keys.end());
        const QString names[] = {"a", "b", "c", "x"};
        for (std::size_t i = 0; i < 4; ++i) {
            recorder.watch(*keys[i], names[i]);
        }
        recorder.watch(*curve);
        recorder.watch(*layer);
        recorder.watch(*animation);
        recorder.watch(*animation->getMarkers());
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene() {
        command.reset();
        animation.reset();
        for (const QPointer<Key>& key : watched) {
            delete key.data();
        }
    }

    Key* a() const { return keys[0]; }
    Key* b() const { return keys[1]; }
    Key* c() const { return keys[2]; }
    Key* x() const { return keys[3]; }
    Markers& markers() const { return *animation->getMarkers(); }

    Curve::KeysIndexMap places() const { return {{a(), 2}, {b(), 6}, {c(), 10}}; }

    /// Done, and recorded from here on.
    void begin(std::unique_ptr<QUndoCommand> done) {
        command = std::move(done);
        command->redo();
        recorder.take();
    }

    std::vector<Key*> keys;
    std::unique_ptr<Animation> animation;
    Layer* layer = nullptr;
    Curve* curve = nullptr;
    std::unique_ptr<QUndoCommand> command;
    SignalRecorder recorder;
    std::vector<QPointer<Key>> watched;
};

using Step = std::function<void(Scene&)>;

struct Operation {
    const char* name; ///< as the page shows it
    Step run;
    Step prepare = [](Scene& /*scene*/) {}; ///< before signals are recorded
};

struct Section {
    const char* title;
    std::vector<Operation> operations;
};

/// All operations in the order of the page.
std::vector<Section> sections();

} // namespace Signals
