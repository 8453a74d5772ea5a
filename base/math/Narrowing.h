#pragma once

#include <limits>

namespace VQ::Math {

/// The nearest float; beyond the largest one an infinity, which a plain conversion would leave undefined.
inline float toFloat(double value) noexcept {
    constexpr auto largest = double{std::numeric_limits<float>::max()};
    if (value > largest) {
        return std::numeric_limits<float>::infinity();
    }
    return value < -largest ? -std::numeric_limits<float>::infinity() : static_cast<float>(value);
}

} // namespace VQ::Math
