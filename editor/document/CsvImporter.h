#pragma once

#include "base/animation/Animation.h"

#include <istream>

namespace Editor {

/// Reads joint trajectories: lines of values with a comma, semicolon or tab between them, whichever the first
/// line has. That line names the columns: first "frame" or a time ("time", "t", "seconds", also with the unit
/// "s" or "ms" in brackets), then actuators, each with a name of its own. Every other line has as many
/// fields. Fields may stand in double quotes, which are doubled inside; empty ones make no key; lines without
/// any content are skipped. Numbers have '.' as decimal point whatever the locale says.
///
/// Frames and times must ascend. Times become frames at the rate that sampleRate() finds. Keys are linear.
/// Throws std::runtime_error "line N: what is wrong there". Time and memory grow with what the file holds,
/// never with what it claims to hold.
VQ::Animation::Animation readCsv(std::istream& stream);

} // namespace Editor
