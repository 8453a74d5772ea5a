#pragma once

#include "base/math/Narrowing.h"

#include <cmath>

/// Points and handles in the plane of a curve.
namespace VQ::Math {

/// A point or vector in the plane of a curve: x in frames, y in value units.
struct Position2D {
    /// In frames.
    float x = 0.0F;
    /// In value units.
    float y = 0.0F;

    /// The origin.
    constexpr Position2D() noexcept = default;
    /// @p pX in frames, @p pY in value units.
    constexpr Position2D(float pX, float pY) noexcept
        : x(pX)
        , y(pY) {}

    /// The Euclidean length; infinite only where the length itself exceeds a float.
    float norm() const noexcept { return toFloat(_length(double{x}, double{y})); }

    /// Whether the distance to @p other is at most @p tolerance. Never true with a NaN coordinate.
    bool isNear(const Position2D& other, const float& tolerance) const noexcept {
        return _length(double{x} - double{other.x}, double{y} - double{other.y}) <= double{tolerance};
    }

    /// IEEE comparison of both coordinates: a NaN equals nothing, zeros of either sign are equal.
    ///@{
    friend constexpr bool operator==(const Position2D& a, const Position2D& b) noexcept {
        return a.x == b.x && a.y == b.y;
    }
    friend constexpr bool operator!=(const Position2D& a, const Position2D& b) noexcept { return !(a == b); }
    ///@}

private:
    // In double the squares of two floats can neither overflow nor vanish.
    static double _length(double x, double y) noexcept { return std::sqrt(x * x + y * y); }
};

} // namespace VQ::Math
