#pragma once

#include "model/Export.h"

namespace ZT {

/// The frame that a target position means: @p x truncated toward zero to a 64-bit integer, its low 32 bits.
///
/// So 2.9 is frame 2, -0.5 is frame 0 and -1 is frame 4294967295. NaN, infinity and whatever does not fit 64
/// bits give frame 0: the low bits of the smallest 64-bit integer.
ZT_MODEL_EXPORT unsigned int frameFromPosition(double x) noexcept;

} // namespace ZT
