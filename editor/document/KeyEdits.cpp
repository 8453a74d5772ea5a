#include "document/KeyEdits.h"

#include "base/math/Narrowing.h"
#include "commands/ChangeKeyParamCommand.h"
#include "commands/MoveCurveKeysCommand.h"
#include "commands/MoveTangentCommand.h"
#include "commands/ReplaceCurveKeysCommand.h"
#include "document/Document.h"
#include "document/KeyInsertion.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace Editor {

namespace {

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;
using ZT::TangentSide;
using Type = KeyEdits::Type;
using Keys = KeySelection::Keys;

// NaN is what it is, and Qt's comparison of points would take different ones for equal.
bool isSame(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

template <class Value>
bool isSame(const std::optional<Value>& a, const std::optional<Value>& b) {
    if (!a || !b) {
        return a.has_value() == b.has_value();
    }
    if constexpr (std::is_same_v<Value, QPointF>) {
        return isSame(a->x(), b->x()) && isSame(a->y(), b->y());
    } else if constexpr (std::is_floating_point_v<Value>) {
        return isSame(double{*a}, double{*b});
    } else {
        return *a == *b;
    }
}

template <class Value, class ValueOf>
std::optional<Value> commonValue(const Keys& keys, ValueOf valueOf) {
    if (keys.isEmpty()) {
        return std::nullopt;
    }
    const std::optional<Value> first = valueOf(**keys.begin());
    const bool isCommon = std::all_of(keys.begin(), keys.end(), [&](const auto* key) {
        return isSame(std::optional<Value>(valueOf(*key)), first);
    });
    return isCommon ? first : std::nullopt;
}

std::optional<QPointF> handleOf(const EditableMotionCurveKey& key, TangentSide side) {
    const auto offset = key.getTangentOffset(side);
    return key.getTangentType(side) == Type::bezier
               ? std::optional(QPointF(double{offset.first}, double{offset.second}))
               : std::nullopt;
}

template <class Predicate>
Keys keysThat(const Keys& keys, Predicate predicate) {
    Keys found;
    for (EditableMotionCurveKey* const key : keys) {
        if (predicate(*key)) {
            found.insert(key);
        }
    }
    return found;
}

} // namespace

KeyEdits::KeyEdits(Document& document)
    : _document(document) {}

KeyEdits::Common KeyEdits::commonOf(const Keys& keys) {
    Common common;
    common.leftType =
        commonValue<Type>(keys, [](const auto& key) { return key.getTangentType(TangentSide::left); });
    common.rightType =
        commonValue<Type>(keys, [](const auto& key) { return key.getTangentType(TangentSide::right); });
    common.isSmooth = commonValue<bool>(keys, [](const auto& key) { return key.isSmooth(); });
    common.isSymmetrical = commonValue<bool>(keys, [](const auto& key) { return key.isSymmetrical(); });
    common.frame = commonValue<unsigned int>(keys, [](const auto& key) { return ZT::index(&key); });
    common.value = commonValue<float>(keys, [](const auto& key) { return key.getValue(); });
    common.leftHandle =
        commonValue<QPointF>(keys, [](const auto& key) { return handleOf(key, TangentSide::left); });
    common.rightHandle =
        commonValue<QPointF>(keys, [](const auto& key) { return handleOf(key, TangentSide::right); });
    return common;
}

EditableMotionCurveKey* KeyEdits::insert(EditableMotionCurve& curve, unsigned int frame) {
    if (!curve.isIndexAvailable(frame) || !_document.isEditable(&curve)) {
        return nullptr;
    }
    EditableMotionCurveKey* const key = KeyInsertion(curve, frame).push(_document.history());
    _document.selection().set({key});
    return key;
}

void KeyEdits::remove(const Keys& keys) {
    if (!keys.isEmpty()) {
        _document.history().push(new ZT::AnimCmd::RemoveCurveKeysCommand(keys.values()));
    }
}

void KeyEdits::setType(const Keys& keys, Type type) {
    _setType(keys, {TangentSide::left, TangentSide::right}, type);
}

void KeyEdits::setType(const Keys& keys, TangentSide side, Type type) {
    _setType(keys, {side}, type);
}

void KeyEdits::_setType(const Keys& keys, std::initializer_list<TangentSide> sides, Type type) {
    QMultiMap<EditableMotionCurveKey*, TangentSide> others;
    for (EditableMotionCurveKey* const key : keys) {
        for (const TangentSide side : sides) {
            if (key->getTangentType(side) != type) {
                others.insert(key, side);
            }
        }
    }
    if (!others.isEmpty()) {
        _document.history().push(new ZT::AnimCmd::ChangeInterpTypeCommand(others, type));
    }
}

void KeyEdits::setSmooth(const Keys& keys, bool isSmooth) {
    const Keys others = keysThat(keys, [&](const auto& key) { return key.isSmooth() != isSmooth; });
    if (!others.isEmpty()) {
        _document.history().push(new ZT::AnimCmd::ChangeSmoothnessCommand(others, isSmooth));
    }
}

void KeyEdits::setSymmetrical(const Keys& keys, bool isSymmetrical) {
    const Keys others = keysThat(keys, [&](const auto& key) { return key.isSymmetrical() != isSymmetrical; });
    if (!others.isEmpty()) {
        _document.history().push(new ZT::AnimCmd::ChangeSymmetryCommand(others, isSymmetrical));
    }
}

void KeyEdits::setValue(const Keys& keys, float value) {
    ZT::AnimCmd::MoveCurveKeysCommand::KeyPosMap targets;
    for (EditableMotionCurveKey* const key : keys) {
        if (std::isfinite(value) && key->getValue() != value) {
            targets.insert(key, QPointF(ZT::index(key), double{value}));
        }
    }
    if (!targets.isEmpty()) {
        _document.history().push(new ZT::AnimCmd::MoveCurveKeysCommand(targets, true));
    }
}

void KeyEdits::setHandle(const Keys& keys, TangentSide side, const QPointF& offset) {
    const float x = VQ::Math::toFloat(offset.x());
    const float y = VQ::Math::toFloat(offset.y());
    const Keys others = keysThat(keys, [&](const auto& key) {
        return key.getTangentType(side) == Type::bezier && key.getTangentOffset(side) != qMakePair(x, y);
    });
    if (!others.isEmpty() && std::isfinite(x) && std::isfinite(y)) {
        _document.history().push(new ZT::AnimCmd::MoveTangentCommand(others, side, x, y, true));
    }
}

} // namespace Editor
