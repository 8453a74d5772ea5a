#pragma once

#include "model/EditableMotionCurve.h"

#include <optional>

namespace Editor {

/// The first key from frame @p first to @p last, or end(). Where keys stand closely it is found by asking
/// frame by frame, otherwise by a walk from the beginning: O(n) at worst, since a curve finds no key beside a
/// frame.
ZT::EditableMotionCurve::iterator firstKeyFrom(ZT::EditableMotionCurve& curve, unsigned int first,
                                               unsigned int last);

/// The frame of the first key behind @p frame. O(n) at worst.
std::optional<unsigned int> nextKeyFrame(ZT::EditableMotionCurve& curve, unsigned int frame);
/// The frame of the last key before @p frame. O(n) at worst.
std::optional<unsigned int> previousKeyFrame(ZT::EditableMotionCurve& curve, unsigned int frame);

/// Calls visit(frame, key) for each key from frame @p first to @p last, ascending. The visitor must not
/// change the curve.
template <class Visit>
void forEachKey(ZT::EditableMotionCurve& curve, unsigned int first, unsigned int last, Visit visit) {
    for (auto position = firstKeyFrom(curve, first, last); position != curve.end(); ++position) {
        const auto [frame, key] = *position;
        if (frame > last) {
            return;
        }
        visit(frame, key);
    }
}

} // namespace Editor
