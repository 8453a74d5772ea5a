#include "base/math/Position2D.h"

#include "AnyFloat.h"

#include <QtTest>

#include <cmath>
#include <type_traits>

using VQ::Math::Position2D;

class Position2DTest : public QObject {
    Q_OBJECT

private slots:
    void aPointHoldsXThenY() {
        static_assert(std::is_trivially_copyable_v<Position2D> && sizeof(Position2D) == 2 * sizeof(float));
        const Position2D point(3.0F, -4.0F);
        QCOMPARE(point.x, 3.0F);
        QCOMPARE(point.y, -4.0F);
        QCOMPARE(Position2D().x, 0.0F);
        QCOMPARE(Position2D().y, 0.0F);
        QVERIFY(offsetof(Position2D, x) < offsetof(Position2D, y));
    }

    void normIsTheEuclideanLength() {
        QCOMPARE(Position2D(3.0F, -4.0F).norm(), 5.0F);
        QCOMPARE(Position2D(-0.5F, 0.0F).norm(), 0.5F);
        QCOMPARE(Position2D().norm(), 0.0F);
    }

    void normNeitherOverflowsNorVanishesOnTheWay() {
        const float largest = std::numeric_limits<float>::max();
        const float smallest = std::numeric_limits<float>::denorm_min();
        QCOMPARE(Position2D(largest, 0.0F).norm(), largest);
        QCOMPARE(Position2D(3e38F * 0.6F, 3e38F * 0.8F).norm(), 3e38F);
        QCOMPARE(Position2D(0.0F, -smallest).norm(), smallest);
        QCOMPARE(Position2D(3.0F * smallest, 4.0F * smallest).norm(), 5.0F * smallest);
        QCOMPARE(Position2D(largest, largest).norm(), std::numeric_limits<float>::infinity());
    }

    void normAgreesWithTheLengthInExtendedPrecision() {
        QVERIFY(rc::check([] {
            const float x = *Records::anyFiniteFloat();
            const float y = *Records::anyFiniteFloat();
            const long double exact = std::hypot(static_cast<long double>(x), static_cast<long double>(y));
            RC_PRE(exact < static_cast<long double>(std::numeric_limits<float>::max()));
            const long double error = std::abs(static_cast<long double>(Position2D(x, y).norm()) - exact);
            RC_ASSERT(error <= exact * static_cast<long double>(std::numeric_limits<float>::epsilon()) / 2 +
                                   static_cast<long double>(std::numeric_limits<float>::denorm_min()) / 2);
        }));
    }

    void pointsWithinTheToleranceAreNear() {
        const Position2D point(1.0F, 2.0F);
        QVERIFY(point.isNear(point, 0.0001F));
        QVERIFY(point.isNear(point, 0.0F));
        QVERIFY(point.isNear(Position2D(1.00005F, 2.00005F), 0.0001F));
        QVERIFY(!point.isNear(Position2D(1.0002F, 2.0F), 0.0001F));
        QVERIFY(!point.isNear(Position2D(1.0F, 1.9998F), 0.0001F));
        QVERIFY(point.isNear(Position2D(1.5F, 2.0F), 0.5F));
        QVERIFY(!point.isNear(point, -1.0F));
    }

    void nearnessIsMutual() {
        QVERIFY(rc::check([] {
            const float x = *Records::anyFloat();
            const float y = *Records::anyFloat();
            const Position2D a(x, y);
            const Position2D b(*Records::anyFloat(), x);
            const float tolerance = *Records::anyFloat();
            RC_ASSERT(a.isNear(b, tolerance) == b.isNear(a, tolerance));
        }));
    }

    void nothingIsNearANan() {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float infinity = std::numeric_limits<float>::infinity();
        QVERIFY(!Position2D(nan, 0.0F).isNear(Position2D(nan, 0.0F), infinity));
        QVERIFY(!Position2D(0.0F, 0.0F).isNear(Position2D(0.0F, nan), infinity));
        QVERIFY(!Position2D().isNear(Position2D(), nan));
    }

    void farPointsAreNotNearEachOther() {
        const float largest = std::numeric_limits<float>::max();
        QVERIFY(!Position2D(largest, 0.0F).isNear(Position2D(-largest, 0.0F), largest));
        QVERIFY(Position2D(largest, largest).isNear(Position2D(largest, largest), 0.0001F));
    }

    void comparisonIsThatOfTheCoordinates() {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        QVERIFY(Position2D(0.0F, -0.0F) == Position2D(-0.0F, 0.0F));
        QVERIFY(!(Position2D(0.0F, -0.0F) != Position2D(-0.0F, 0.0F)));
        QVERIFY(Position2D(1.0F, 2.0F) != Position2D(1.0F, 3.0F));
        QVERIFY(Position2D(1.0F, 2.0F) != Position2D(3.0F, 2.0F));
        const Position2D undefined(nan, 0.0F);
        QVERIFY(undefined != undefined);
        QVERIFY(!(undefined == undefined));
    }
};

QTEST_GUILESS_MAIN(Position2DTest)
#include "Position2DTest.moc"
