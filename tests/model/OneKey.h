#pragma once

#include "model/EditableMotionCurve.h"
#include "tests/base/Records.h"

#include <QPair>
#include <QString>
#include <QStringList>

/// The names and records of tests that look at keys one by one.
namespace OneKey {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Offset = QPair<float, float>;
using Record = VQ::Math::Interpolation::Key;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Position2D;

inline Record record(Type leftType, Position2D leftOffset, Type rightType, Position2D rightOffset,
                     float value = 0.0F) {
    return Records::makeKey(value, leftType, leftOffset, rightType, rightOffset);
}

inline Record bezier(Position2D leftOffset, Position2D rightOffset) {
    return record(Type::bezier, leftOffset, Type::bezier, rightOffset);
}

/// Both tangents as text: "2 (-1, 0) 2 (2, 0)".
inline QString tangents(const Key& key) {
    QStringList texts;
    for (const Side side : {Side::left, Side::right}) {
        const Offset offset = key.getTangentOffset(side);
        texts.append(QString("%1 (%2, %3)")
                         .arg(static_cast<int>(key.getTangentType(side)))
                         .arg(static_cast<double>(offset.first))
                         .arg(static_cast<double>(offset.second)));
    }
    return texts.join(' ');
}

inline Position2D handle(const Key& key, Side side) {
    const Offset offset = key.getTangentOffset(side);
    return {offset.first, offset.second};
}

inline Side other(Side side) {
    return side == Side::left ? Side::right : Side::left;
}

inline Key* add(Curve& curve, unsigned int frame, const Record& key) {
    return curve.insert(frame, new Key(key))->second;
}

} // namespace OneKey
