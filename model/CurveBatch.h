#pragma once

#include "model/EditableMotionCurve.h"
#include "model/FirstException.h"
#include "model/KeyTrail.h"

#include <utility>

namespace ZT {

/// While it lives, the curve is inside a batch. Whatever slots throw, the batch is carried through: each step
/// runs in thrown.guard(), and end() throws what was thrown first.
class [[nodiscard]] EditableMotionCurve::Batch {
public:
    explicit Batch(EditableMotionCurve& curve)
        : _curve(&curve) {
        ++curve._batchDepth;
    }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch() {
        if (_curve != nullptr) {
            --_curve->_batchDepth;
        }
    }

    /// Leaves the depth raised for good.
    void leaveRaised() noexcept { _curve = nullptr; }

    /// Ends the batch; the outermost one announces the change.
    void end() {
        _end();
        thrown.rethrow();
    }

    FirstException thrown;

protected:
    void _end() noexcept {
        EditableMotionCurve* const curve = std::exchange(_curve, nullptr);
        --curve->_batchDepth;
        thrown.guard([&] { curve->onKeysChanged(); });
    }

private:
    EditableMotionCurve* _curve;
};

/// A batch that moves keys in time: its end recomputes automatic handles and checks the greatest frame.
class [[nodiscard]] EditableMotionCurve::BatchWithFrames : public Batch {
public:
    explicit BatchWithFrames(EditableMotionCurve& curve)
        : BatchWithFrames(curve, curve.getGreaterIndex()) {}
    /// @p previousGreater: what listeners take for the greatest frame.
    BatchWithFrames(EditableMotionCurve& curve, unsigned int previousGreater)
        : Batch(curve)
        , _curve(curve)
        , _previousGreater(previousGreater) {}

    void end() {
        thrown.guard([&] { _curve._updateBezierAutoTangents(trail); });
        _end();
        thrown.guard([&] { _curve._checkGreaterIndexChanged(_previousGreater); });
        thrown.rethrow();
    }

    KeyTrail trail; ///< the keys of a walk in the order of frames; empty if there was none or few keys

private:
    EditableMotionCurve& _curve;
    unsigned int _previousGreater;
};

} // namespace ZT
