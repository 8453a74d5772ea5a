#pragma once

#include "base/animation/Animation.h"
#include "base/animation/AnimationXml.h"
#include "fuzz/support/Law.h"
#include "fuzz/support/PlainState.h"

#include <regex>
#include <sstream>
#include <string>

/// What must hold for files, whatever their format is.
namespace FileLaws {

/// That an error says "line N: " and something behind it.
inline void requirePlace(const std::string& problem) {
    static const std::regex place("line [0-9]+: [^]+");
    requireLaw(std::regex_match(problem, place), "an error names its place", problem);
}

/// That an animation comes back from the file that was written of it.
inline void requireRoundTrip(const VQ::Animation::Animation& animation) {
    std::stringstream stream;
    VQ::Animation::writeAnimationXml(stream, animation.serialize());
    VQ::Animation::Animation again;
    requireLaw(again.deserialize(VQ::Animation::readAnimationXml(stream)), "what was written can be read",
               stream.str());
    requireSame(PlainState::of(again), PlainState::of(animation), "an animation comes back bit by bit");
}

} // namespace FileLaws
