#pragma once

#include <functional>
#include <map>

namespace VQ::Animation {

class MotionCurve;

/// Where a key stands: its curve and its position in that curve's map.
///
/// A key that carries its place answers "where is this key?" without a search, and without a table beside the
/// map that would cost memory and could be wrong. The curve alone writes it: when it places the key and when
/// it lets it go, before anybody else can look.
struct KeyPlace {
    /// The map under a curve's pointer map.
    using Map = std::map<unsigned int, void*, std::less<>>;

    const MotionCurve* curve = nullptr; ///< null for a key that stands nowhere
    Map::iterator position;
};

} // namespace VQ::Animation
