#pragma once

#include <boost/chrono/duration.hpp>
#include <boost/rational.hpp>

namespace VQ::Animation {

/// A duration counted in exact fractions of a second: a curve's time unit is the length of one frame.
using RationalSeconds = boost::chrono::duration<boost::rational<int>, boost::ratio<1, 1>>;

} // namespace VQ::Animation
