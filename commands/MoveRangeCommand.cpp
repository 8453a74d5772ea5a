#include "commands/MoveRangeCommand.h"

#include <QCoreApplication>

#include <algorithm>

namespace ZT::AnimCmd {

MoveRangeCommand::MoveRangeCommand(AnimationMarkers* markers, const KeysIndexMap& keys, unsigned int oldStart,
                                   unsigned int oldEnd, unsigned int newStart, bool finalCommand)
    : ChangeRangeCommand(markers, keys, oldStart, oldEnd, finalCommand) {
    // Frames are unsigned: a move to the left wraps around and comes out right.
    const unsigned int delta = newStart - oldStart;
    const unsigned int newEnd = delta + oldEnd;
    const unsigned int span = oldEnd - oldStart + 1U;
    pendingRange = {newStart, newEnd};
    setRangeText(
        QCoreApplication::translate("ZT::AnimCmd::MoveRangeCommand", "Move range from (%1; %2) to (%3; %4)"),
        {oldStart, oldEnd}, pendingRange);
    if (newStart == oldStart || keys.isEmpty()) {
        forgetKeys();
        return;
    }
    const unsigned int first = std::min(newStart, oldStart);
    const unsigned int last = std::max(oldEnd, newEnd);
    for (auto entry = keys.cbegin(); entry != keys.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        const unsigned int frame = entry.value();
        if (key == nullptr || key->getParentCurve() == nullptr || frame < first || frame > last) {
            continue;
        }
        const unsigned int shift = frame < oldStart ? span : frame > oldEnd ? 0U - span : delta;
        newIndices[key->getParentCurve()].insert(key, frame + shift);
    }
}

MoveRangeCommand::~MoveRangeCommand() = default;

int MoveRangeCommand::id() const {
    return 4;
}

} // namespace ZT::AnimCmd
