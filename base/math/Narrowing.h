#pragma once

#include <limits>

namespace VQ::Math {

/// The nearest float, ties to even, as hardware converts; where that is beyond the largest one, an infinity.
/// A plain conversion is undefined for all that lies beyond the largest one.
inline float toFloat(double value) noexcept {
    constexpr float largest = std::numeric_limits<float>::max();
    constexpr double tie = 0x1.ffffffp127; // between the largest float and the next one, if there were one
    if (value > double{largest}) {
        return value < tie ? largest : std::numeric_limits<float>::infinity();
    }
    if (value < -double{largest}) {
        return value > -tie ? -largest : -std::numeric_limits<float>::infinity();
    }
    return static_cast<float>(value);
}

} // namespace VQ::Math
