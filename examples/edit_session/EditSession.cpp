#include "EditSession.h"

#include "AnimationState.h"
#include "KeyChoice.h"
#include "base/math/Narrowing.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/ChangeRangeCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveRangeCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "commands/StretchRangeCommand.h"
#include "model/AnimationMarkers.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

using namespace KeyChoice;
using namespace ZT::AnimCmd;
using VQ::Math::Interpolation::InterpolationType;
using ZT::TangentSide;

namespace {

constexpr int dragSteps = 20;
constexpr unsigned int rangeShift = 12;   // frames
constexpr unsigned int rangeStretch = 20; // frames

bool hasFlags(const Key& key) {
    return key.isSmooth() || key.isSymmetrical();
}

bool hasRightHandle(const Key& key) {
    return key.getTangentType(TangentSide::right) == InterpolationType::bezier;
}

/// Where a drag from 0 to @p distance stands at @p step.
unsigned int dragged(unsigned int distance, int step) {
    return static_cast<unsigned int>(quint64{distance} * static_cast<quint64>(step) / dragSteps);
}

} // namespace

EditSession::EditSession(ZT::EditableAnimation& animation)
    : _animation(animation) {
    const auto count = [this] { ++_signalsReceived; };
    QObject::connect(&animation, &ZT::EditableAnimation::layersChanged, &_listener, count);
    QObject::connect(&animation, &ZT::EditableAnimation::greaterIndexChanged, &_listener, count);
}

void EditSession::play() {
    _addKeys();
    _replaceKeys();
    _changeInterpolationType();
    _changeTangentParameters();
    _changeSmoothness();
    _changeSymmetry();
    _dragTangent();
    _dragKeys();
    _removeKeys();
    _changeRange();
    _dragRange();
    _stretchRange();
}

void EditSession::undoAll() {
    while (_stack.canUndo()) {
        _stack.undo();
        _checkPlacedKeys();
    }
}

void EditSession::redoAll() {
    while (_stack.canRedo()) {
        _stack.redo();
        _checkPlacedKeys();
    }
}

// The edits.
// ------------------------------------------------------------------------------------------------------

/// A new key in the widest gap of up to two layers. The command owns the keys while they are in no curve.
void EditSession::_addKeys() {
    QMap<Curve*, Curve::KeysIndexMap> keys;
    for (int layer = 0; layer < 2; ++layer) {
        Curve* const curve = _nextCurve(hasFreeFrame);
        if (curve == nullptr || keys.contains(curve)) {
            continue;
        }
        const Key* const before = keyWithMostRoom(*curve);
        const unsigned int frame = curve->getIndexOf(before) + (roomBehind(*curve, before) + 1) / 2;
        auto key = std::make_unique<Key>();
        key->setValue(VQ::Math::toFloat(double{curve->valueAt(frame)} + 0.3 * reachOf(*curve)));
        keys[curve].insert(key.release(), frame);
    }
    if (keys.isEmpty()) {
        return _leaveOut("add keys", "no layer with keys has a free frame");
    }
    _edit([&] { _stack.push(new AddCurveKeysCommand(keys)); });
}

/// A passage of three keys gives way to one key in its middle.
void EditSession::_replaceKeys() {
    Curve* const curve = _nextCurve([](const Curve& candidate) { return !candidate.empty(); });
    if (curve == nullptr) {
        return _leaveOut("replace keys", "no layer has keys");
    }
    const std::vector<Key*> passage = middleOf(keysOf(*curve), curve->size() < 5 ? 1 : 3);
    const Key* const middle = passage[passage.size() / 2];
    auto key = std::make_unique<Key>();
    key->setValue(VQ::Math::toFloat(double{middle->getValue()} - 0.4 * reachOf(*curve)));
    const QMap<Curve*, Curve::KeysIndexMap> inserted{{curve, {{key.release(), curve->getIndexOf(middle)}}}};
    _edit([&] { _stack.push(new ReplaceCurveKeysCommand({passage.begin(), passage.end()}, inserted)); });
}

/// One segment, from a key's outgoing to its neighbour's incoming tangent, becomes a straight line or, when
/// it is one, a step. Smooth and symmetrical keys are not touched: their flags ask for "bezier" when a file
/// is read.
void EditSession::_changeInterpolationType() {
    const auto isFree = [](const Key& key) { return !hasFlags(key); };
    Curve* const curve = _nextCurve([&](Curve& candidate) { return !keysThat(candidate, isFree).empty(); });
    if (curve == nullptr) {
        return _leaveOut("change the interpolation type",
                         "no key is without the smooth and symmetrical flags");
    }
    Key* const key = middleOf(keysThat(*curve, isFree), 1).front();
    QMultiMap<Key*, TangentSide> tangents{{key, TangentSide::right}};
    if (Key* const next = curve->getNextKey(key); next != nullptr && isFree(*next)) {
        tangents.insert(next, TangentSide::left);
    }
    const bool isLine = key->getTangentType(TangentSide::right) == InterpolationType::linear;
    const auto type = isLine ? InterpolationType::constant : InterpolationType::linear;
    _edit([&] { _stack.push(new ChangeInterpTypeCommand(tangents, type)); });
}

void EditSession::_changeTangentParameters() {
    Curve* const curve = _nextCurve([](const Curve& candidate) { return !candidate.empty(); });
    if (curve == nullptr) {
        return _leaveOut("change the tangents' parameters", "no layer has keys");
    }
    const QSet<Key*> keys = toSet(middleOf(keysOf(*curve), 3));
    const bool smooth = true;
    const bool symmetrical = false;
    _edit([&] {
        _stack.push(new ChangeTangentParamCommand(keys, InterpolationType::bezier, smooth, symmetrical));
    });
}

/// Where all keys are smooth already, some lose the flag instead.
void EditSession::_changeSmoothness() {
    const auto isRough = [](const Key& key) { return !key.isSmooth(); };
    Curve* curve = _nextCurve([&](Curve& candidate) { return !keysThat(candidate, isRough).empty(); });
    const bool smooth = curve != nullptr;
    curve = smooth ? curve : _nextCurve([](const Curve& candidate) { return !candidate.empty(); });
    if (curve == nullptr) {
        return _leaveOut("change the smoothness", "no layer has keys");
    }
    const QSet<Key*> keys = toSet(middleOf(smooth ? keysThat(*curve, isRough) : keysOf(*curve), 2));
    _edit([&] { _stack.push(new ChangeSmoothnessCommand(keys, smooth)); });
}

/// Where all keys are symmetrical already, one loses the flag instead.
void EditSession::_changeSymmetry() {
    const auto isFree = [](const Key& key) { return !key.isSymmetrical(); };
    Curve* curve = _nextCurve([&](Curve& candidate) { return !keysThat(candidate, isFree).empty(); });
    const bool symmetrical = curve != nullptr;
    curve = symmetrical ? curve : _nextCurve([](const Curve& candidate) { return !candidate.empty(); });
    if (curve == nullptr) {
        return _leaveOut("change the symmetry", "no layer has keys");
    }
    Key* const key = middleOf(symmetrical ? keysThat(*curve, isFree) : keysOf(*curve), 1).front();
    _edit([&] { _stack.push(new ChangeSymmetryCommand(key, symmetrical)); });
}

/// A handle is pulled to half the way to the next key and upwards; the opposite one follows a symmetrical
/// key.
void EditSession::_dragTangent() {
    if (_nextLayer > 0) {
        --_nextLayer; // The layer of the edit before comes first: its key has just become symmetrical.
    }
    Curve* const curve =
        _nextCurve([](Curve& candidate) { return !keysThat(candidate, hasRightHandle).empty(); });
    if (curve == nullptr) {
        return _leaveOut("drag a handle", "no key has a \"bezier\" handle");
    }
    const std::vector<Key*> withHandle = keysThat(*curve, hasRightHandle);
    const auto symmetrical = std::find_if(withHandle.begin(), withHandle.end(),
                                          [](const Key* candidate) { return candidate->isSymmetrical(); });
    Key* const key = symmetrical == withHandle.end() ? middleOf(withHandle, 1).front() : *symmetrical;
    const QPair<float, float> from = key->getTangentOffset(TangentSide::right);
    const double toFrames = std::min(0.5 * (roomBehind(*curve, key) + 1), 12.0);
    const double toValue = 0.4 * reachOf(*curve);
    _drag([&](int step, bool isLast) {
        const double part = static_cast<double>(step) / dragSteps;
        const double frames = double{from.first} + part * (toFrames - double{from.first});
        const double value = double{from.second} + part * (toValue - double{from.second});
        return new MoveTangentCommand(key, TangentSide::right, VQ::Math::toFloat(frames),
                                      VQ::Math::toFloat(value), isLast);
    });
}

/// Up to three neighbours go right, as far as the gap behind them allows, and upwards. Each step names where
/// every key goes, counted from where it stood when the drag began.
void EditSession::_dragKeys() {
    Curve* const curve = _nextCurve(hasFreeFrame);
    if (curve == nullptr) {
        return _leaveOut("drag keys", "no layer with keys has a free frame");
    }
    Key* key = keyWithMostRoom(*curve);
    const unsigned int distance = std::min(roomBehind(*curve, key), rangeShift);
    const double height = 0.25 * reachOf(*curve);
    Curve::KeyPosMap from;
    for (; key != nullptr && from.size() < 3; key = curve->getPreviousKey(key)) {
        from.insert(key, {static_cast<double>(curve->getIndexOf(key)), static_cast<double>(key->getValue())});
    }
    _drag([&](int step, bool isLast) {
        Curve::KeyPosMap to = from;
        for (QPointF& position : to) {
            position += QPointF(dragged(distance, step), height * step / dragSteps);
        }
        return new MoveCurveKeysCommand(to, isLast);
    });
}

void EditSession::_removeKeys() {
    Curve* const curve = _nextCurve([](const Curve& candidate) { return candidate.size() > 1; });
    if (curve == nullptr) {
        return _leaveOut("remove keys", "it would take a layer's only key");
    }
    const std::vector<Key*> keys = middleOf(keysOf(*curve), curve->size() > 3 ? 2 : 1);
    _edit([&] { _stack.push(new RemoveCurveKeysCommand({keys.begin(), keys.end()})); });
}

/// The user marks a range over about a third of the animation, ten frames at least. No key moves, so none is
/// given.
void EditSession::_changeRange() {
    if (!_hasRoomForRanges()) {
        return _leaveOut("mark a range", "no layer has keys, or they stand too far out");
    }
    unsigned int first = _animation.getGreaterIndex();
    const unsigned int last = first;
    for (const ZT::EditableAnimationLayer* const layer : _animation) {
        const Curve& curve = *layer->getCurve();
        first = curve.empty() ? first : std::min(first, (*curve.begin()).first);
    }
    const unsigned int start = first + (last - first) / 4 - std::min(first, 4U);
    const unsigned int length = std::max((last - first) / 3 + 1, 10U);
    _drag([&](int step, bool isLast) {
        return new ChangeRangeCommand(_animation.getMarkers(), {}, start, start + dragged(length, step),
                                      isLast);
    });
}

/// The range goes right with its keys. Each step starts from what the step before left: range and frames as
/// they are.
void EditSession::_dragRange() {
    if (!_hasRoomForRanges()) {
        return _leaveOut("move the range", "no layer has keys, or they stand too far out");
    }
    ZT::AnimationMarkers* const markers = _animation.getMarkers();
    const unsigned int from = markers->rangeStartIndex();
    _drag([&](int step, bool isLast) {
        return new MoveRangeCommand(markers, _allKeys(), markers->rangeStartIndex(), markers->rangeEndIndex(),
                                    from + dragged(rangeShift, step), isLast);
    });
}

/// The range's end is pulled right. Each step starts from range and frames as they were when the drag began,
/// so that roundings of one step do not add up over the drag.
void EditSession::_stretchRange() {
    ZT::AnimationMarkers* const markers = _animation.getMarkers();
    const unsigned int start = markers->rangeStartIndex();
    const unsigned int end = markers->rangeEndIndex();
    if (!_hasRoomForRanges() || start == end) {
        return _leaveOut("stretch the range", "no layer has keys, or they stand too far out");
    }
    const Curve::KeysIndexMap keys = _allKeys();
    if (std::none_of(keys.begin(), keys.end(),
                     [&](unsigned int frame) { return frame >= start && frame <= end; })) {
        return _leaveOut("stretch the range",
                         "no key stands in it"); // There is nothing that could be stretched.
    }
    _drag([&](int step, bool isLast) {
        return new StretchRangeCommand(markers, keys, start, end, end + dragged(rangeStretch, step), isLast,
                                       StretchSide::end);
    });
}

// What the edits share.
// -------------------------------------------------------------------------------------------

/// The next layer's curve that has room, behind the one that was chosen last; null when no layer has room.
EditSession::Curve* EditSession::_nextCurve(const std::function<bool(Curve&)>& hasRoom) {
    for (std::size_t tried = 0; tried < _animation.size(); ++tried) {
        Curve* const curve = _animation[_nextLayer++ % _animation.size()]->getCurve();
        if (hasRoom(*curve)) {
            return curve;
        }
    }
    return nullptr;
}

EditSession::Curve::KeysIndexMap EditSession::_allKeys() const {
    Curve::KeysIndexMap keys;
    for (ZT::EditableAnimationLayer* const layer : _animation) {
        for (const auto [frame, key] : *layer->getCurve()) {
            keys.insert(key, frame);
        }
    }
    return keys;
}

/// Stretching counts frames in single precision, which is exact up to 2^24.
bool EditSession::_hasRoomForRanges() const {
    const bool hasKeys = std::any_of(_animation.begin(), _animation.end(),
                                     [](const auto* layer) { return !layer->getCurve()->empty(); });
    return hasKeys && _animation.getGreaterIndex() < (1U << 24U) - rangeShift - rangeStretch - 2;
}

void EditSession::_edit(const std::function<void()>& push) {
    _record(1, push);
}

/// One command for each step of the mouse; only the last one says that the button was released. The stack
/// merges each step into the entry of the steps before.
void EditSession::_drag(const std::function<QUndoCommand*(int step, bool isLast)>& makeStep) {
    _record(dragSteps, [&] {
        for (int step = 1; step <= dragSteps; ++step) {
            _stack.push(makeStep(step, step == dragSteps));
            _checkPlacedKeys();
        }
    });
}

void EditSession::_record(int steps, const std::function<void()>& push) {
    const AnimationState before(_animation);
    const int entries = _stack.count();
    _signalsReceived = 0;
    push();
    const int signalsReceived = _signalsReceived;
    if (_stack.count() != entries + 1) {
        throw std::logic_error("\"" + _stack.undoText().toStdString() + "\" made " +
                               std::to_string(_stack.count() - entries) +
                               " entries of the history instead of one");
    }
    _history.push_back(
        {_stack.undoText(), steps, AnimationState(_animation).keysTouchedSince(before), signalsReceived});
}

void EditSession::_leaveOut(const char* edit, const char* reason) {
    _history.push_back({QString("(left out: %1, since %2)").arg(edit, reason), 0, 0, 0});
}

void EditSession::_checkPlacedKeys() const {
    for (int i = 0; i < _stack.count(); ++i) {
        const auto* const command = dynamic_cast<const ChangeRangeCommand*>(_stack.command(i));
        if (command != nullptr && !command->failedKeys().empty()) {
            throw std::logic_error("\"" + command->text().toStdString() + "\" could not place every key");
        }
    }
}
