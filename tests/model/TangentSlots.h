#pragma once

#include "OneKey.h"

#include <QTest>

/// The same operation by the slot of one side and by the slot that names the side.
namespace TangentSlots {

struct Slot {
    OneKey::Side side;
    bool named;

    void setType(OneKey::Key& key, OneKey::Type type) const {
        if (named) {
            key.setTangentType(side, type);
        } else if (side == OneKey::Side::left) {
            key.setLeftTangentType(type);
        } else {
            key.setRightTangentType(type);
        }
    }

    void setOffset(OneKey::Key& key, OneKey::Offset offset) const {
        if (named) {
            key.setTangentOffset(side, offset);
        } else if (side == OneKey::Side::left) {
            key.setLeftTangentOffset(offset);
        } else {
            key.setRightTangentOffset(offset);
        }
    }
};

inline void addRows() {
    QTest::addColumn<int>("side");
    QTest::addColumn<bool>("named");
    QTest::newRow("left slot") << 0 << false;
    QTest::newRow("right slot") << 1 << false;
    QTest::newRow("left by side") << 0 << true;
    QTest::newRow("right by side") << 1 << true;
}

inline Slot fetchRow() {
    QFETCH(int, side);
    QFETCH(bool, named);
    return {static_cast<OneKey::Side>(side), named};
}

} // namespace TangentSlots
