#pragma once

#include "base/Export.h"

namespace VQ::Math {

/// A point or vector in the plane of a curve: x in frames, y in value units.
struct VQ_EXPORT Position2D {
    float x = 0.0F;
    float y = 0.0F;

    constexpr Position2D() noexcept = default;
    constexpr Position2D(float pX, float pY) noexcept
        : x(pX)
        , y(pY) {}

    /// The Euclidean length; infinite only where the length itself exceeds a float.
    float norm() const noexcept;

    /// Whether the distance to @p other is at most @p tolerance. Never true with a NaN coordinate.
    bool isNear(const Position2D& other, const float& tolerance) const noexcept;

    /// IEEE comparison of both coordinates: a NaN equals nothing, zeros of either sign are equal.
    friend constexpr bool operator==(const Position2D& a, const Position2D& b) noexcept {
        return a.x == b.x && a.y == b.y;
    }
    friend constexpr bool operator!=(const Position2D& a, const Position2D& b) noexcept { return !(a == b); }
};

} // namespace VQ::Math
