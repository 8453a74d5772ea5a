#pragma once

#include "model/EditableMotionCurve.h"
#include "support/Workload.h"

#include <QMultiMap>
#include <QSet>

#include <functional>
#include <vector>

namespace Bench {

using Key = ZT::EditableMotionCurveKey;
using Curve = ZT::EditableMotionCurve;

/// The i-th key's record: waveValue(), automatic tangents on both sides.
VQ::Math::Interpolation::Key recordOf(std::size_t i);

/// n such keys on gapFrame().
VQ::Animation::MotionCurve plainCurve(std::size_t n);

/// A curve of a setting's size and layout, with its keys in the forms that operations take.
struct LibraryCurve {
    using FrameOf = unsigned int (*)(std::size_t);

    explicit LibraryCurve(const Setting& setting, FrameOf frameOf = gapFrame);

    /// Where every @p stride-th key stands now, and how @p frameOf moves it, @p rise added to its value.
    Curve::KeyPosMap positions(std::size_t stride = 1) const;
    Curve::KeyPosMap targets(const std::function<double(unsigned int)>& frameOf, double rise,
                             std::size_t stride = 1) const;
    /// All keys with their frames, @p by frames later.
    Curve::KeysIndexMap frames(unsigned int by = 0) const;
    QSet<Key*> keySet() const;
    QMultiMap<Key*, ZT::TangentSide> bothSides() const;
    Key* middleKey() const { return keys[keys.size() / 2]; }

    Curve curve;
    std::vector<Key*> keys; ///< in frame order
};

} // namespace Bench
