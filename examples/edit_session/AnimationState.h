#pragma once

#include "model/EditableAnimation.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

/// The whole state of an animation at one time, to be compared with another one bit by bit.
///
/// One thing may differ and is counted: the handle of a "bezier auto" tangent is computed, and a stored
/// handle within 0.0001 of its formula stays as it is. So after an edit and its undo such a handle may hold
/// other bits than before, as long as both lie within that distance of what the formula gives for the key and
/// its neighbours.
class AnimationState {
public:
    explicit AnimationState(const ZT::EditableAnimation& animation);

    enum class Objects {
        same, ///< the very key objects, and the markers
        any   ///< contents alone, for an animation that was read anew
    };
    struct Comparison {
        QStringList differences;    ///< what is wrong and where; empty for equal states
        std::size_t recomputed = 0; ///< automatic handles with other bits, within their tolerance
        std::size_t keysCompared = 0;
    };
    /// How this state differs from the one that is expected.
    Comparison comparedWith(const AnimationState& expected, Objects objects) const;

    /// The keys that entered, left or changed in any way since @p before, neighbours with recomputed handles
    /// included.
    std::size_t keysTouchedSince(const AnimationState& before) const;

    /// What reading a file that holds this state gives: the flags of a smooth or symmetrical key are set
    /// anew, which aligns its handles once more and so may round them differently.
    AnimationState asReadBack() const;

private:
    using Record = VQ::Math::Interpolation::Key;

    struct KeyState {
        unsigned int frame;
        const ZT::EditableMotionCurveKey* key;
        Record record;
        bool smooth;
        bool symmetrical;
    };
    struct LayerState {
        QString name;
        bool mute;
        VQ::Animation::RationalSeconds timeUnit;
        std::array<float, 3> limits; ///< minimum, maximum, steepest slope
        std::vector<KeyState> keys;
    };
    /// One key among its neighbours.
    struct Place {
        const LayerState& layer;
        std::size_t position;
    };

    static bool _sameBits(const KeyState& a, const KeyState& b);
    static std::pair<VQ::Math::Position2D, VQ::Math::Position2D> _automaticHandles(const Place& place);
    static void _compareKeys(const Place& actual, const Place& expected, Objects objects, Comparison& result);

    std::vector<LayerState> _layers;
    std::array<unsigned int, 6> _markers;
};
