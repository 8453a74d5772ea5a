#pragma once

#include <algorithm>
#include <cmath>

/// The arithmetic of handles: what a key's neighbours, flags and types make of them.
namespace Floor {

struct Point {
    float x = 0.0F;
    float y = 0.0F;
};

struct Handles {
    Point left;
    Point right;
};

inline double usable(float distance) noexcept {
    return std::isfinite(distance) && distance > 0.0F ? double{distance} : 0.0;
}

inline float heightOf(double slope, double dx, float dy) noexcept {
    return static_cast<float>(
        std::clamp(slope * dx / 3.0, std::min(0.0, double{dy}), std::max(0.0, double{dy})));
}

/// The handles of an automatic key: distances in frames, differences in values, both from left to right.
inline Handles automaticHandles(float dxPrevious, float dxNext, float dyPrevious, float dyNext) noexcept {
    const double before = usable(dxPrevious);
    const double after = usable(dxNext);
    Handles handles{{static_cast<float>(-before / 3.0), 0.0F}, {static_cast<float>(after / 3.0), 0.0F}};
    const bool isSteep = (dyPrevious > 0.0F && dyNext > 0.0F) || (dyPrevious < 0.0F && dyNext < 0.0F);
    if (isSteep && before > 0.0 && after > 0.0 && std::isfinite(dyPrevious) && std::isfinite(dyNext)) {
        const double rise1 = double{dyPrevious};
        const double rise2 = double{dyNext};
        const double steepest = 3.0 * std::min(std::abs(rise1 / before), std::abs(rise2 / after));
        const double slope = std::clamp((rise1 + rise2) / (before + after), -steepest, steepest);
        handles.left.y = -heightOf(slope, before, dyPrevious);
        handles.right.y = heightOf(slope, after, dyNext);
    }
    return handles;
}

/// Whether two handles are less than the tolerance of 0.0001 apart.
inline bool isNear(const Point& a, const Point& b) noexcept {
    const double dx = double{a.x} - double{b.x};
    const double dy = double{a.y} - double{b.y};
    return dx * dx + dy * dy <= 0.0001 * 0.0001;
}

inline double lengthOf(const Point& point) noexcept {
    return std::sqrt(double{point.x} * double{point.x} + double{point.y} * double{point.y});
}

/// Both handles in the mean of their directions, with their lengths.
inline Handles alignedHandles(const Handles& handles) noexcept {
    const float mean =
        (std::atan2(-handles.left.y, -handles.left.x) + std::atan2(handles.right.y, handles.right.x)) * 0.5F;
    const float cosine = std::cos(mean);
    const float sine = std::sin(mean);
    const auto left = static_cast<float>(lengthOf(handles.left));
    const auto right = static_cast<float>(lengthOf(handles.right));
    return {{-cosine * left, -sine * left}, {cosine * right, sine * right}};
}

} // namespace Floor
