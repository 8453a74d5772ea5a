#pragma once

#include <cstdint>
#include <cstring>
#include <limits>

namespace VQ::Math {

static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == sizeof(std::uint32_t));

/// The bits of a float: they tell apart what comparison calls equal, zeros by sign and NaNs from each other.
inline std::uint32_t floatBits(float number) noexcept {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

inline float floatFromBits(std::uint32_t bits) noexcept {
    float number = 0.0F;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

} // namespace VQ::Math
