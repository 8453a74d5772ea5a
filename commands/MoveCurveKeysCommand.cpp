#include "commands/MoveCurveKeysCommand.h"

#include "base/math/FloatBits.h"
#include "base/math/Narrowing.h"
#include "model/EditableMotionCurveExceptions.h"
#include "model/FirstException.h"
#include "model/FrameConversion.h"
#include "model/Prefetch.h"

#include <QCoreApplication>

#include <algorithm>

namespace ZT::AnimCmd {

using KeyMoves = EditableMotionCurve::KeyMoves;

namespace {

bool isSameKey(const KeyMoves::value_type& a, const KeyMoves::value_type& b) noexcept {
    return a.first == b.first;
}

template <class CurvesTargets>
std::vector<EditableMotionCurveKey*> allKeys(const CurvesTargets& curvesTargets) {
    std::vector<EditableMotionCurveKey*> keys;
    for (const auto& [curve, targets] : curvesTargets) {
        for (const auto& [key, target] : targets) {
            keys.push_back(key);
        }
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

// Keys that changed curves between two steps still are the same keys.
template <class CurvesTargets>
bool movesSameKeys(const CurvesTargets& a, const CurvesTargets& b) {
    const auto isSame = [](const auto& ofA, const auto& ofB) {
        return ofA.first == ofB.first && std::equal(ofA.second.begin(), ofA.second.end(), ofB.second.begin(),
                                                    ofB.second.end(), isSameKey);
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), isSame) || allKeys(a) == allKeys(b);
}

} // namespace

MoveCurveKeysCommand::MoveCurveKeysCommand(const KeyPosMap& positions, bool finalCommand)
    : _mergeState(finalCommand) {
    // Deliberate: one text for every drag that is not empty; see
    // everyDragThatIsNotEmptyIsLabelledMoveOneKey().
    const char* const context = "ZT::AnimCmd::MoveCurveKeysCommand";
    setText(positions.isEmpty() ? QCoreApplication::translate(context, "Move %1 keys").arg(positions.size())
                                : QCoreApplication::translate(context, "Move one key"));
    // Keys of one curve mostly come one after the other: its lists are looked up when the curve changes.
    EditableMotionCurve* last = nullptr;
    KeyMoves* targets = nullptr;
    Origins* origins = nullptr;
    PrefetchAhead ahead(static_cast<std::size_t>(positions.size()), positions.cbegin(), positions.cend(),
                        [](auto entry) { return entry.key(); });
    for (auto entry = positions.cbegin(); entry != positions.cend(); ++entry) {
        ahead.step();
        EditableMotionCurveKey* const key = entry.key();
        EditableMotionCurve* const curve = key != nullptr ? key->getParentCurve() : nullptr;
        if (curve == nullptr) {
            continue;
        }
        if (curve != last) {
            last = curve;
            targets = &_targets[curve];
            origins = &_origins[curve];
        }
        targets->emplace_back(key, entry.value());
        origins->push_back({key, index(key), key->getValue()});
    }
}

MoveCurveKeysCommand::~MoveCurveKeysCommand() = default;

void MoveCurveKeysCommand::redo() {
    FirstException thrown;
    for (const auto& [curve, targets] : _targets) {
        thrown.guard([&, curve = curve, &targets = targets] { curve->_moveKeys(targets); });
        thrown.guard([&, curve = curve] { _finishRedo(*curve); });
    }
    thrown.rethrow();
}

void MoveCurveKeysCommand::_finishRedo(EditableMotionCurve& curve) const {
    const auto reached = _reached.find(&curve);
    if (reached == _reached.end()) {
        return;
    }
    _finishMove(curve, reached->second);
    _restoreValues(curve, reached->second);
}

void MoveCurveKeysCommand::undo() {
    if (_hasMerged) {
        _notePlaces();
    }
    FirstException thrown;
    for (const auto& [curve, origins] : _origins) {
        for (const auto step : {_moveBack, _finishMove, _restoreValues}) {
            thrown.guard([&, curve = curve, &origins = origins] { step(*curve, origins); });
        }
    }
    thrown.rethrow();
}

// The steps of a drag may have led a key where the last step alone would not: past another key that stood in
// the way at first, or to a zero of the other sign. Redoing must give what the drag had made, since later
// entries of the history build on it.
void MoveCurveKeysCommand::_notePlaces() {
    for (const auto& [curve, targets] : _targets) {
        Origins& places = _reached[curve];
        places.clear();
        places.reserve(targets.size());
        for (const auto& [key, target] : targets) {
            const bool isHere = key->getParentCurve() == curve;
            const float value = VQ::Math::toFloat(target.y());
            places.push_back({key, isHere ? index(key) : frameFromPosition(target.x()),
                              key->getValue() == value ? key->getValue() : value});
        }
    }
}

void MoveCurveKeysCommand::_moveBack(EditableMotionCurve& curve, const Origins& origins) {
    KeyMoves moves;
    moves.reserve(origins.size());
    for (const auto& [key, frame, value] : origins) {
        moves.emplace_back(key, QPointF(static_cast<double>(frame), static_cast<double>(value)));
    }
    curve._moveKeys(moves);
}

// Keys that go separate ways may stand in each other's way: moving one key at a time then leaves some behind.
// Those go to their places together. A place that a key of nobody's concern took meanwhile is left to it: no
// key is pushed out.
void MoveCurveKeysCommand::_finishMove(EditableMotionCurve& curve, const Origins& places) {
    EditableMotionCurve::KeysIndexMap astray;
    for (const auto& [key, frame, value] : places) {
        if (key->getParentCurve() == &curve && index(key) != frame) {
            astray.insert(key, frame);
        }
    }
    const auto isFree = [&](unsigned int frame) {
        EditableMotionCurveKey* const occupant = curve.getKey(frame);
        return occupant == nullptr || astray.contains(occupant);
    };
    if (!astray.isEmpty() && std::all_of(astray.cbegin(), astray.cend(), isFree)) {
        try {
            curve.reorganizeKeys(astray);
        } catch (const EditableMotionCurveReorganizedFail& failure) {
            // A slot put something in their way.
            FirstException thrown;
            for (EditableMotionCurveKey* const key : failure.failedKeys) {
                thrown.guard([&] { curve._putBack(key, astray.value(key)); });
            }
            thrown.rethrow();
        }
    }
}

void MoveCurveKeysCommand::_restoreValues(EditableMotionCurve& curve, const Origins& origins) {
    EditableMotionCurve::KeyValues dropped;
    for (const auto& [key, frame, value] : origins) {
        if (VQ::Math::floatBits(key->getValue()) != VQ::Math::floatBits(value)) {
            dropped.emplace_back(key, value);
        }
    }
    curve._restoreValues(dropped);
}

int MoveCurveKeysCommand::id() const {
    return 1;
}

bool MoveCurveKeysCommand::mergeWith(const QUndoCommand* other) {
    const bool isOpen = _mergeState.beginMerge();
    const auto* const next = dynamic_cast<const MoveCurveKeysCommand*>(other);
    if (!isOpen || next == nullptr || next->id() != id() || !movesSameKeys(_targets, next->_targets)) {
        return false;
    }
    CurvesTargets targets = next->_targets;
    _targets.swap(targets);
    _hasMerged = true;
    _reached.clear();
    _mergeState.accept(next->_mergeState);
    return true;
}

bool MoveCurveKeysCommand::isFinalCommand() const {
    return _mergeState.isFinal();
}

} // namespace ZT::AnimCmd
