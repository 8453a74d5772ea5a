#include "commands/StretchRangeCommand.h"

#include "model/FrameConversion.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace ZT::AnimCmd {

struct StretchRangeCommand::Candidate {
    EditableMotionCurveKey* key;
    unsigned int current; ///< where it stands now: the order in which keys are placed
    unsigned int given;   ///< where the caller sees it: what its new frame is computed from
};

namespace {

/// The frames that keys of one curve have taken. Runs of taken frames are skipped in nearly constant time.
class TakenFrames {
public:
    /// Takes and returns the first free frame from @p wanted upwards, past the last frame on to 0.
    unsigned int take(unsigned int wanted) {
        unsigned int free = wanted;
        for (auto behind = _free.find(free); behind != _free.end(); behind = _free.find(free)) {
            free = behind->second;
        }
        // Whoever asks for a frame of this run again is sent straight behind it.
        while (wanted != free) {
            wanted = std::exchange(_free.at(wanted), free + 1U);
        }
        _free.emplace(free, free + 1U);
        return free;
    }

private:
    std::unordered_map<unsigned int, unsigned int> _free; ///< a taken frame, and one where to look on
};

// Single precision, in this order of operations: the frames of a stretch are the same on every machine. A
// range of one frame divides zero by zero; NaN means frame 0, and the caller's lower bound then decides.
unsigned int stretched(unsigned int frame, unsigned int oldStart, unsigned int oldEnd, unsigned int newStart,
                       unsigned int newEnd) {
    const float way = static_cast<float>(frame) - static_cast<float>(oldStart);
    const float newLength = static_cast<float>(newEnd) - static_cast<float>(newStart);
    const float oldLength = static_cast<float>(oldEnd) - static_cast<float>(oldStart);
    const float target = (way * newLength) / oldLength + static_cast<float>(newStart);
    return frameFromPosition(static_cast<double>(std::floor(target)));
}

} // namespace

StretchRangeCommand::StretchRangeCommand(AnimationMarkers* markers, const KeysIndexMap& keys,
                                         unsigned int oldStart, unsigned int oldEnd, unsigned int newValue,
                                         bool finalCommand, StretchSide stretchSide)
    : ChangeRangeCommand(markers, keys, oldStart, oldEnd, finalCommand)
    , _dragBaseRange{oldStart, oldEnd} {
    const bool startSide = stretchSide != StretchSide::end;
    pendingRange = startSide ? Range{newValue, oldEnd} : Range{oldStart, newValue};
    const bool unmoved =
        startSide ? stretchSide == StretchSide::start && newValue == oldStart : newValue == oldEnd;
    if (unmoved || oldStart > oldEnd || pendingRange.start > pendingRange.end || keys.isEmpty()) {
        pendingRange = markersRange();
        forgetKeys();
        return;
    }

    QMap<EditableMotionCurve*, Candidates> candidates;
    for (auto entry = keys.cbegin(); entry != keys.cend(); ++entry) {
        EditableMotionCurveKey* const key = entry.key();
        if (key != nullptr && key->getParentCurve() != nullptr) {
            candidates[key->getParentCurve()].push_back({key, index(key), entry.value()});
        }
    }
    const auto isInside = [&](const Candidate& candidate) {
        return candidate.given >= oldStart && candidate.given <= oldEnd;
    };
    unsigned int maxCount = 0;
    for (const Candidates& ofCurve : std::as_const(candidates)) {
        const auto count = std::count_if(ofCurve.begin(), ofCurve.end(), isInside);
        maxCount = std::max(maxCount, static_cast<unsigned int>(count));
    }
    if (!_makeRoom(startSide, maxCount)) {
        return;
    }
    for (auto entry = candidates.begin(); entry != candidates.end(); ++entry) {
        std::sort(entry->begin(), entry->end(),
                  [](const Candidate& a, const Candidate& b) { return a.current < b.current; });
        _reindex(entry.key(), *entry);
    }
    setRangeText(QCoreApplication::translate("ZT::AnimCmd::StretchRangeCommand",
                                             "Stretch range from (%1; %2) to (%3; %4)"),
                 _dragBaseRange, pendingRange);
}

StretchRangeCommand::~StretchRangeCommand() = default;

// Deliberate: without a key inside, maxCount - 1 wraps around and the range collapses; and on the start side
// a range that ends at maxCount is given up although its keys would just fit. See
// aStretchWithoutKeysInsideCollapsesTheRange() and aStartStretchIsGivenUpOneFrameEarly().
bool StretchRangeCommand::_makeRoom(bool startSide, unsigned int maxCount) {
    if (pendingRange.end - pendingRange.start >= maxCount - 1U) {
        return true;
    }
    if (!startSide) {
        pendingRange.end = pendingRange.start + maxCount - 1U;
        return true;
    }
    if (pendingRange.end <= maxCount) {
        return false;
    }
    pendingRange.start = pendingRange.end - maxCount + 1U;
    return true;
}

void StretchRangeCommand::_reindex(EditableMotionCurve* curve, const Candidates& candidates) {
    const auto [oldStart, oldEnd] = _dragBaseRange;
    const auto [newStart, newEnd] = pendingRange;
    unsigned int count = 0;
    for (const Candidate& candidate : candidates) {
        count += candidate.given >= oldStart && candidate.given <= oldEnd ? 1U : 0U;
    }
    TakenFrames taken;
    unsigned int placed = 0;
    for (const auto& [key, current, given] : candidates) {
        if (given > oldEnd) {
            newIndices[curve].insert(key, given - oldEnd + newEnd);
        } else if (given >= oldStart) {
            // Between what the keys before it and the keys behind it leave.
            const unsigned int upper = placed + 1U - count + newEnd;
            const unsigned int lower = placed + newStart;
            const unsigned int target = stretched(given, oldStart, oldEnd, newStart, newEnd);
            newIndices[curve].insert(key, taken.take(std::max(std::min(upper, target), lower)));
            ++placed;
        }
    }
}

int StretchRangeCommand::id() const {
    return 5;
}

bool StretchRangeCommand::mergeWith(const QUndoCommand* other) {
    mergeState().beginMerge();
    const auto* const next = dynamic_cast<const StretchRangeCommand*>(other);
    if (next == nullptr || next->id() != id() || next->_dragBaseRange.start != _dragBaseRange.start ||
        next->_dragBaseRange.end != _dragBaseRange.end) {
        return false;
    }
    return ChangeRangeCommand::mergeWith(other);
}

} // namespace ZT::AnimCmd
