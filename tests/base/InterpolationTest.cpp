#include "base/math/Interpolation.h"

#include "Records.h"

#include <QtTest>

#include <cstddef>
#include <type_traits>

using Records::Key;
using Records::Type;

class InterpolationTest : public QObject {
    Q_OBJECT

private slots:
    void typesAreNumberedFromConstantToAutomatic() {
        static_assert(std::is_same_v<std::underlying_type_t<Type>, std::int32_t>);
        QCOMPARE(static_cast<int>(Type::constant), 0);
        QCOMPARE(static_cast<int>(Type::linear), 1);
        QCOMPARE(static_cast<int>(Type::bezier), 2);
        QCOMPARE(static_cast<int>(Type::bezierAuto), 3);
    }

    void aNewKeyIsAutomaticWithoutValueAndHandles() {
        const Key key;
        QCOMPARE(Records::of(key), Records::of(Records::makeKey(0.0F, Type::bezierAuto, {0.0F, 0.0F},
                                                                Type::bezierAuto, {0.0F, 0.0F})));
    }

    void aKeyIsCopiedByteByByte() {
        static_assert(std::is_trivially_copyable_v<Key> && !std::is_polymorphic_v<Key>);
        const Key key = Records::unusualKey(VQ::Math::floatFromBits(0x7f800001));
        Key copy;
        std::memcpy(&copy, &key, sizeof copy);
        QCOMPARE(Records::of(copy), Records::of(key));
    }

    void fieldsStandFromValueToRightHandle() {
        static_assert(std::is_standard_layout_v<Key>);
        QCOMPARE(offsetof(Key, value), std::size_t{0});
        QVERIFY(offsetof(Key, value) < offsetof(Key, leftTangentType));
        QVERIFY(offsetof(Key, leftTangentType) < offsetof(Key, leftTangentOffset));
        QVERIFY(offsetof(Key, leftTangentOffset) < offsetof(Key, rightTangentType));
        QVERIFY(offsetof(Key, rightTangentType) < offsetof(Key, rightTangentOffset));
    }
};

QTEST_GUILESS_MAIN(InterpolationTest)
#include "InterpolationTest.moc"
