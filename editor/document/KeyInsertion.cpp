#include "document/KeyInsertion.h"

#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "document/History.h"
#include "document/Macro.h"
#include "document/Translation.h"

#include <cmath>
#include <memory>
#include <utility>

namespace Editor {

using Type = VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Position2D;
using ZT::TangentSide;

namespace {

TangentSide opposite(TangentSide side) {
    return side == TangentSide::left ? TangentSide::right : TangentSide::left;
}

Position2D offsetOf(const ZT::EditableMotionCurveKey& key, TangentSide side) {
    const auto offset = key.getTangentOffset(side);
    return Position2D(offset.first, offset.second);
}

// The direction in which a handle has the curve leave its key, as the smooth constraint takes it.
float directionOf(const Position2D& handle, TangentSide side) {
    return side == TangentSide::left ? std::atan2(-handle.y, -handle.x) : std::atan2(handle.y, handle.x);
}

// Whether the smooth constraint, which turns a handle in single precision, leaves both its coordinates as
// they are but for a hundred-thousandth of each. Steep handles are those that suffer.
bool keepsHandle(const Position2D& handle, TangentSide side, float direction) {
    constexpr float bearable = 1e-5F;
    const float length = side == TangentSide::left ? -handle.norm() : handle.norm();
    const float x = length * std::cos(direction);
    const float y = length * std::sin(direction);
    return std::abs(x - handle.x) <= bearable * std::abs(handle.x) &&
           std::abs(y - handle.y) <= bearable * std::abs(handle.y);
}

} // namespace

KeyInsertion::KeyInsertion(ZT::EditableMotionCurve& curve, unsigned int frame)
    : _curve(curve)
    , _frame(frame) {
    for (const auto& [other, key] : curve) {
        if (other > frame) {
            _right = key;
            break;
        }
        _left = key;
    }
    _shape();
    _free(_left, TangentSide::right);
    _free(_right, TangentSide::left);
}

void KeyInsertion::_shape() {
    VQ::Math::Interpolation::Key& key = _division.key;
    if (_left == nullptr && _right == nullptr) {
        return;
    }
    Type type = Type::constant;
    if (_left == nullptr || _right == nullptr) {
        key.value = (_left != nullptr ? _left : _right)->getValue();
    } else {
        const Type leaving = _left->getTangentType(TangentSide::right);
        const Type arriving = _right->getTangentType(TangentSide::left);
        if (leaving == Type::constant || arriving == Type::constant) {
            key.value = _left->getValue();
        } else if (leaving == Type::linear && arriving == Type::linear) {
            key.value = _curve.valueAt(_frame);
            type = Type::linear;
        } else {
            _division = divideSegment(ZT::index(_left), _left->baseMotionCurveKey(), ZT::index(_right),
                                      _right->baseMotionCurveKey(), _frame);
            _isCubic = true;
            return;
        }
    }
    key.leftTangentType = type;
    key.rightTangentType = type;
}

// What must be made free at a neighbour, whose side @p facing is that of the new key.
void KeyInsertion::_free(Key* neighbour, TangentSide facing) {
    if (neighbour == nullptr) {
        return;
    }
    bool isFreed = false;
    bool areBezier = true; // in the end
    for (const TangentSide side : {TangentSide::left, TangentSide::right}) {
        const Type type = neighbour->getTangentType(side);
        const bool isDivided = _isCubic && side == facing;
        if (type == Type::bezierAuto || (isDivided && type == Type::linear)) {
            _bezierNow.insert(neighbour, side);
            isFreed = true;
        } else {
            areBezier = areBezier && type == Type::bezier;
        }
    }
    // The flags act only where both tangents are "bezier".
    if (!areBezier || (!_isCubic && !isFreed)) {
        return;
    }
    if (neighbour->isSymmetrical()) {
        _symmetricalNoMore.insert(neighbour);
    }
    if (neighbour->isSmooth() && _isTurned(*neighbour, facing, isFreed)) {
        _smoothNoMore.insert(neighbour);
    }
}

// Whether the smooth constraint would turn the neighbour's other handle: to the mean of both when they become
// "bezier", then to that of the divided one.
bool KeyInsertion::_isTurned(const Key& neighbour, TangentSide facing, bool isFreed) const {
    const TangentSide far = opposite(facing);
    const Position2D own = offsetOf(neighbour, facing);
    const Position2D other = offsetOf(neighbour, far);
    const float mean = (directionOf(own, facing) + directionOf(other, far)) * 0.5F;
    if (isFreed && !keepsHandle(other, far, mean)) {
        return true;
    }
    const Position2D divided = facing == TangentSide::right ? _division.leftsHandle : _division.rightsHandle;
    const bool isMoved = _isCubic && (isFreed || divided != own);
    return isMoved && !keepsHandle(other, far, directionOf(divided, facing));
}

ZT::EditableMotionCurveKey* KeyInsertion::push(History& history) {
    Macro macro(history, tr("Insert key"));
    if (!_symmetricalNoMore.isEmpty()) {
        macro.add(std::make_unique<ZT::AnimCmd::ChangeSymmetryCommand>(_symmetricalNoMore, false));
    }
    if (!_smoothNoMore.isEmpty()) {
        macro.add(std::make_unique<ZT::AnimCmd::ChangeSmoothnessCommand>(_smoothNoMore, false));
    }
    if (!_bezierNow.isEmpty()) {
        macro.add(std::make_unique<ZT::AnimCmd::ChangeInterpTypeCommand>(_bezierNow, Type::bezier));
    }
    auto* const key = new Key(_division.key); // The command owns it.
    macro.add(std::make_unique<ZT::AnimCmd::AddCurveKeysCommand>(key, &_curve, _frame));
    if (_isCubic) {
        const auto [left, right] = std::make_pair(_division.leftsHandle, _division.rightsHandle);
        macro.add(std::make_unique<ZT::AnimCmd::MoveTangentCommand>(_left, TangentSide::right, left.x, left.y,
                                                                    true));
        macro.add(std::make_unique<ZT::AnimCmd::MoveTangentCommand>(_right, TangentSide::left, right.x,
                                                                    right.y, true));
    }
    macro.commit();
    return key;
}

} // namespace Editor
