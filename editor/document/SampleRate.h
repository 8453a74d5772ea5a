#pragma once

#include "base/animation/RationalSeconds.h"

#include <optional>
#include <vector>

namespace Editor {

/// The moments of samples in seconds, at least zero and ascending.
struct SampleTimes {
    std::vector<double> seconds;
    double digit = 0.0; ///< what the last digit that the times were written with is worth; 0 for exact times
};

/// The frame of each of @p times where @p timeUnit lasts from one to the next, as far as they all lie on
/// frames, no two on one and none beyond the last; otherwise nothing. A time lies on a frame when it differs
/// from it by no more than rounding to its last digit, to a millionth of a second or to single precision
/// explains. O(times).
std::optional<std::vector<unsigned int>> framesAt(const SampleTimes& times,
                                                  const VQ::Animation::RationalSeconds& timeUnit);

/// The length of a frame for which framesAt() has an answer: of the whole rates that the smallest step
/// between two times may mean the one that fits best; otherwise 1001/1000 of such a length, as television has
/// it; otherwise the lowest whole rate above, up to 1000 a second, that fits. 25 a second where one time
/// alone fits that. Nothing where no rate fits. O(times * rates), but mostly O(times): a rate that does not
/// fit is left soon.
std::optional<VQ::Animation::RationalSeconds> sampleRate(const SampleTimes& times);

} // namespace Editor
