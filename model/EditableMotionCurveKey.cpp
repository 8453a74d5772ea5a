#include "model/EditableMotionCurveKey.h"

#include "base/math/BezierTangents.h"
#include "base/math/FloatBits.h"
#include "model/EditableMotionCurve.h"
#include "model/FirstException.h"

#include <QMetaMethod>

#include <array>
#include <cmath>
#include <memory>

namespace ZT {

using VQ::Math::floatBits;
using VQ::Math::Position2D;
using VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Interpolation::Key;

namespace {

// Two floats that compare equal may still differ in sign or as NaNs; undo restores bits.
bool sameBits(const Position2D& a, const Position2D& b) noexcept {
    return floatBits(a.x) == floatBits(b.x) && floatBits(a.y) == floatBits(b.y);
}

// Most handles are exactly right already.
bool isClose(const Position2D& handle, const Position2D& computed) noexcept {
    constexpr float tolerance = 0.0001F;
    return handle == computed || handle.isNear(computed, tolerance);
}

// An automatic handle is right as it stands: what was captured may have been other neighbours'. Where they
// are the same, its bits come back.
bool needsRestoring(InterpolationType type, const Position2D& offset, InterpolationType capturedType,
                    const Position2D& captured) noexcept {
    return type == capturedType && !sameBits(offset, captured) &&
           (type != InterpolationType::bezierAuto || isClose(offset, captured));
}

float angle(float x, float y) noexcept {
    return std::atan2(y, x);
}

Position2D unitVector(float direction) noexcept {
    return {std::cos(direction), std::sin(direction)};
}

Position2D scaled(const Position2D& point, float factor) noexcept {
    return {point.x * factor, point.y * factor};
}

Position2D opposite(const Position2D& point) noexcept {
    return {-point.x, -point.y};
}

// A key's three signals and the curve's slot as positions in their meta-objects. Connecting by them costs
// neither text comparisons nor a functor object for each connection. The last signal comes first, so that Qt
// sizes the key's table of connections once; the order among different signals cannot be observed.
struct CurveConnections {
    std::array<int, 3> signalIndices{
        QMetaMethod::fromSignal(&EditableMotionCurveKey::indexChanged).methodIndex(),
        QMetaMethod::fromSignal(&EditableMotionCurveKey::valueChanged).methodIndex(),
        QMetaMethod::fromSignal(&EditableMotionCurveKey::tangentsChanged).methodIndex()};
    int slotIndex = EditableMotionCurve::staticMetaObject.indexOfSlot("onKeysChanged()");

    static const CurveConnections& get() {
        static const CurveConnections connections;
        return connections;
    }
};

} // namespace

EditableMotionCurveKey::EditableMotionCurveKey() = default;

EditableMotionCurveKey::EditableMotionCurveKey(const Key& key)
    : Key(key) {}

EditableMotionCurveKey::~EditableMotionCurveKey() = default;

void EditableMotionCurveKey::_connectTo(EditableMotionCurve* curve) {
    // A key that one curve made and another took in speaks to both.
    const bool isHeardByOthers = _isHeardByOthers || (_parentCurve != nullptr && _parentCurve != curve);
    _parentCurve = curve;
    for (const int signal : CurveConnections::get().signalIndices) {
        QMetaObject::connect(this, signal, curve, CurveConnections::get().slotIndex);
    }
    _isHeardByOthers = isHeardByOthers;
}

void EditableMotionCurveKey::_disconnectFrom(const EditableMotionCurve* curve) {
    _isHeardByOthers = _isHeardByOthers || _parentCurve != curve;
    _parentCurve = nullptr;
    for (const int signal : CurveConnections::get().signalIndices) {
        QMetaObject::disconnect(this, signal, curve, CurveConnections::get().slotIndex);
    }
}

void EditableMotionCurveKey::connectNotify(const QMetaMethod& /*signal*/) {
    _isHeardByOthers = true;
}

// While a batch runs, the parent curve ignores its keys: a signal that nobody else has ever connected to need
// not be sent, and a drag of thousands of keys is mostly such signals. Only a debugger's hook into all of
// Qt's signals could tell. The curve of a key that stands nowhere is not asked: it merely made the key, and
// may be gone.
bool EditableMotionCurveKey::_isHeard() const {
    return _isHeardByOthers || _place.mapNumber == 0 || _parentCurve == nullptr ||
           !_parentCurve->_isInBatch();
}

void EditableMotionCurveKey::_announceValue() {
    if (_isHeard()) {
        Q_EMIT valueChanged(value);
    }
}

void EditableMotionCurveKey::_announceTangents() {
    if (_isHeard()) {
        Q_EMIT tangentsChanged();
    }
}

void EditableMotionCurveKey::_announceIndex(unsigned int frame) {
    if (_isHeard()) {
        Q_EMIT indexChanged(frame);
    }
}

EditableMotionCurveKey* EditableMotionCurveKey::clone() const {
    auto copy = std::make_unique<EditableMotionCurveKey>(baseMotionCurveKey());
    copy->_smooth = _smooth;
    copy->_symmetrical = _symmetrical;
    return copy.release();
}

Key EditableMotionCurveKey::baseMotionCurveKey() const {
    return *this;
}

InterpolationType EditableMotionCurveKey::getTangentType(TangentSide side) const noexcept {
    switch (side) {
    case TangentSide::left:
        return leftTangentType;
    case TangentSide::right:
        return rightTangentType;
    }
    return InterpolationType::bezierAuto;
}

QPair<float, float> EditableMotionCurveKey::getTangentOffset(TangentSide side) const noexcept {
    switch (side) {
    case TangentSide::left:
        return {leftTangentOffset.x, leftTangentOffset.y};
    case TangentSide::right:
        return {rightTangentOffset.x, rightTangentOffset.y};
    }
    return {0.0F, 0.0F};
}

void EditableMotionCurveKey::setValue(float pValue) {
    if (pValue == value) {
        return;
    }
    value = pValue;
    _announceValue();
}

void EditableMotionCurveKey::setLeftTangentType(const InterpolationType& pType) {
    _setType(leftTangentType, pType);
}

void EditableMotionCurveKey::setRightTangentType(const InterpolationType& pType) {
    _setType(rightTangentType, pType);
}

void EditableMotionCurveKey::setTangentType(TangentSide side, InterpolationType type) {
    switch (side) {
    case TangentSide::left:
        return _setType(leftTangentType, type);
    case TangentSide::right:
        return _setType(rightTangentType, type);
    }
}

// Deliberate: recomputing automatic handles may emit tangentsChanged() itself, so that a change of type may
// emit it twice. See aTypeChangeThatMovesAnAutomaticHandleEmitsTangentsChangedTwice().
void EditableMotionCurveKey::_setType(InterpolationType& type, InterpolationType newType) {
    if (type == newType) {
        return;
    }
    type = newType;
    FirstException thrown;
    thrown.guard([&] { _onTangentTypeChanged(); });
    thrown.guard([&] { _announceTangents(); });
    thrown.rethrow();
}

bool EditableMotionCurveKey::_bothBezier() const noexcept {
    return leftTangentType == InterpolationType::bezier && rightTangentType == InterpolationType::bezier;
}

void EditableMotionCurveKey::_onTangentTypeChanged() {
    if (!_bothBezier()) {
        updateBezierAutoTangents();
        return;
    }
    Position2D& left = leftTangentOffset;
    Position2D& right = rightTangentOffset;
    if (_symmetrical) {
        right = Position2D((right.x - left.x) * 0.5F, (right.y - left.y) * 0.5F);
        left = opposite(right);
    } else if (_smooth) {
        // Deliberate: the plain mean of two angles. Directions on either side of a half turn average to the
        // opposite direction; see handlesThatStraddleAHalfTurnAverageToTheOppositeDirection().
        const Position2D mean = unitVector((angle(-left.x, -left.y) + angle(right.x, right.y)) * 0.5F);
        left = opposite(scaled(mean, left.norm()));
        right = scaled(mean, right.norm());
    }
}

void EditableMotionCurveKey::setLeftTangentOffset(const QPair<float, float>& pOffset) {
    _setOffset(TangentSide::left, pOffset);
}

void EditableMotionCurveKey::setRightTangentOffset(const QPair<float, float>& pOffset) {
    _setOffset(TangentSide::right, pOffset);
}

void EditableMotionCurveKey::setTangentOffset(TangentSide side, QPair<float, float> offset) {
    if (side == TangentSide::left || side == TangentSide::right) {
        _setOffset(side, offset);
    }
}

void EditableMotionCurveKey::_setOffset(TangentSide side, const QPair<float, float>& offset) {
    Position2D& own = side == TangentSide::left ? leftTangentOffset : rightTangentOffset;
    const Position2D target(offset.first, offset.second);
    // Deliberate: only a "bezier" handle is the user's to set; see offsetsOfOtherTypesCannotBeSet().
    if (getTangentType(side) != InterpolationType::bezier || own == target) {
        return;
    }
    own = target;
    _onTangentParamChanged(side);
    _announceTangents();
}

void EditableMotionCurveKey::_onTangentParamChanged(TangentSide side) {
    if (!_bothBezier() || (side != TangentSide::left && side != TangentSide::right)) {
        return;
    }
    const bool fromLeft = side == TangentSide::left;
    const Position2D& own = fromLeft ? leftTangentOffset : rightTangentOffset;
    Position2D& other = fromLeft ? rightTangentOffset : leftTangentOffset;
    if (_symmetrical) {
        other = opposite(own);
    } else if (_smooth) {
        // The direction of the outgoing handle, whichever of the two was moved.
        const Position2D direction = unitVector(fromLeft ? angle(-own.x, -own.y) : angle(own.x, own.y));
        const Position2D outgoing = scaled(direction, other.norm());
        other = fromLeft ? outgoing : opposite(outgoing);
    }
}

bool EditableMotionCurveKey::_applyFlag(bool& flag, bool newFlag) {
    if (flag == newFlag) {
        return false;
    }
    flag = newFlag;
    if (newFlag) {
        leftTangentType = InterpolationType::bezier;
        rightTangentType = InterpolationType::bezier;
        _onTangentTypeChanged();
    }
    return true;
}

// Deliberate: the flags' signals stand for the tangents too; see
// aFlagThatForcesTheTypesEmitsOnlyItsOwnSignal(). No curve listens to them.
void EditableMotionCurveKey::setSmooth(bool pSmooth) {
    if (_applyFlag(_smooth, pSmooth) && _isHeardByOthers) {
        Q_EMIT smoothChanged(pSmooth);
    }
}

void EditableMotionCurveKey::setSymmetrical(bool pSymmetrical) {
    if (_applyFlag(_symmetrical, pSymmetrical) && _isHeardByOthers) {
        Q_EMIT symmetricalChanged(pSymmetrical);
    }
}

bool EditableMotionCurveKey::_hasAutoTangents() const noexcept {
    return leftTangentType == InterpolationType::bezierAuto ||
           rightTangentType == InterpolationType::bezierAuto;
}

bool EditableMotionCurveKey::updateBezierAutoTangents() {
    if (_parentCurve == nullptr || !_hasAutoTangents()) {
        return false;
    }
    const EditableMotionCurve& curve = *_parentCurve;
    const EditableMotionCurveKey* const previous = curve.getPreviousKey(this);
    const EditableMotionCurveKey* const next = curve.getNextKey(this);
    return _updateBezierAutoTangents({index(previous), previous}, index(this), {index(next), next});
}

bool EditableMotionCurveKey::_updateBezierAutoTangents(const Placed& previous, unsigned int frame,
                                                       const Placed& next) {
    const bool leftAuto = leftTangentType == InterpolationType::bezierAuto;
    const bool rightAuto = rightTangentType == InterpolationType::bezierAuto;
    if (!leftAuto && !rightAuto) {
        return false;
    }
    const auto distance = [](unsigned int from, unsigned int to) { return static_cast<float>(to - from); };
    // Deliberate: without a previous key the distance is the one to frame 0; see
    // theFirstKeyMeasuresItsLeftHandleFromFrameZero().
    const float dxPrevious = distance(previous.first, frame);
    const float dxNext = next.second != nullptr ? distance(frame, next.first) : 0.0F;
    const float dyPrevious = previous.second != nullptr ? value - previous.second->value : 0.0F;
    const float dyNext = next.second != nullptr ? next.second->value - value : 0.0F;
    const auto [left, right] = VQ::Math::computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, dyNext);

    const bool leftMoves = leftAuto && !isClose(leftTangentOffset, left);
    const bool rightMoves = rightAuto && !isClose(rightTangentOffset, right);
    if (!leftMoves && !rightMoves) {
        return false;
    }
    leftTangentOffset = leftMoves ? left : leftTangentOffset;
    rightTangentOffset = rightMoves ? right : rightTangentOffset;
    _announceTangents();
    return true;
}

bool EditableMotionCurveKey::_handlesDifferFrom(const Key& record) const noexcept {
    return needsRestoring(leftTangentType, leftTangentOffset, record.leftTangentType,
                          record.leftTangentOffset) ||
           needsRestoring(rightTangentType, rightTangentOffset, record.rightTangentType,
                          record.rightTangentOffset);
}

bool EditableMotionCurveKey::_restoreHandles(const Key& record) {
    if (!_handlesDifferFrom(record)) {
        return false;
    }
    if (needsRestoring(leftTangentType, leftTangentOffset, record.leftTangentType,
                       record.leftTangentOffset)) {
        leftTangentOffset = record.leftTangentOffset;
    }
    if (needsRestoring(rightTangentType, rightTangentOffset, record.rightTangentType,
                       record.rightTangentOffset)) {
        rightTangentOffset = record.rightTangentOffset;
    }
    _announceTangents();
    return true;
}

bool EditableMotionCurveKey::_restoreValue(float pValue) {
    if (floatBits(value) == floatBits(pValue)) {
        return false;
    }
    value = pValue;
    _announceValue();
    return true;
}

unsigned int index(const EditableMotionCurveKey* key) {
    if (key == nullptr || key->getParentCurve() == nullptr) {
        return 0U;
    }
    const auto& place = key->_placement();
    if (place.mapNumber == 0 && place.wasShared == 0) {
        return 0U; // It stands nowhere, and the curve that made it may be gone.
    }
    return key->getParentCurve()->_frameOf(*key);
}

QString interpolTypeToString(InterpolationType type) {
    switch (type) {
    case InterpolationType::constant:
        return QObject::tr("constant");
    case InterpolationType::linear:
        return QObject::tr("linear");
    case InterpolationType::bezier:
        return QObject::tr("bezier");
    case InterpolationType::bezierAuto:
        break;
    }
    return QObject::tr("bezier auto");
}

} // namespace ZT
