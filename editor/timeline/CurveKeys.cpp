#include "timeline/CurveKeys.h"

#include "document/Frames.h"

#include <algorithm>
#include <cstdint>

namespace Editor {

namespace {

using Curve = ZT::EditableMotionCurve;

} // namespace

Curve::iterator firstKeyFrom(Curve& curve, unsigned int first, unsigned int last) {
    if (curve.empty() || first > last || curve.getGreaterIndex() < first) {
        return curve.end();
    }
    auto position = curve.begin();
    if ((*position).first < first) {
        // Looking a frame up costs some steps of a walk; so many questions never cost more than the walk
        // would.
        const std::uint64_t frames = std::uint64_t{last} - first + 1U;
        const auto questions = static_cast<unsigned int>(std::min<std::uint64_t>(frames, curve.size() / 8));
        for (unsigned int i = 0; i < questions; ++i) {
            if (const auto found = curve.find(first + i); found != curve.end()) {
                return found;
            }
        }
        if (questions == frames) {
            return curve.end();
        }
        while ((*position).first < first) { // The last key is not before it.
            ++position;
        }
    }
    return (*position).first <= last ? position : curve.end();
}

std::optional<unsigned int> nextKeyFrame(Curve& curve, unsigned int frame) {
    if (frame == lastPossibleFrame) {
        return std::nullopt;
    }
    const auto next = firstKeyFrom(curve, frame + 1U, lastPossibleFrame);
    return next == curve.end() ? std::nullopt : std::optional((*next).first);
}

std::optional<unsigned int> previousKeyFrame(Curve& curve, unsigned int frame) {
    auto position = firstKeyFrom(curve, frame, lastPossibleFrame);
    if (position == curve.begin()) {
        return std::nullopt;
    }
    --position;
    return (*position).first;
}

} // namespace Editor
