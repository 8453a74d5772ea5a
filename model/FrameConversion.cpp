#include "model/FrameConversion.h"

#include <cstdint>

namespace ZT {

unsigned int frameFromPosition(double x) noexcept {
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!(x >= -limit && x < limit)) {
        return 0U;
    }
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(static_cast<std::int64_t>(x)));
}

} // namespace ZT
