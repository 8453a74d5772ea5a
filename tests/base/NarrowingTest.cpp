#include "base/math/Narrowing.h"

#include "AnyFloat.h"

#include <QtTest>

#include <cmath>

using VQ::Math::toFloat;

class NarrowingTest : public QObject {
    Q_OBJECT

private slots:
    void everyFloatStaysItself() {
        QVERIFY(rc::check([] {
            const float value = *Records::anyFloat();
            if (std::isnan(value)) {
                RC_ASSERT(std::isnan(toFloat(double{value})));
            } else {
                RC_ASSERT(VQ::Math::floatBits(toFloat(double{value})) == VQ::Math::floatBits(value));
            }
        }));
    }

    void otherNumbersBecomeTheNearestFloat() {
        QCOMPARE(toFloat(0.1), 0.1F);
        QCOMPARE(toFloat(1.0 + std::ldexp(1.0, -24)), 1.0F);
        QCOMPARE(toFloat(1.0 + 3.0 * std::ldexp(1.0, -24)), 1.0F + 2.0F * std::ldexp(1.0F, -23));
        QCOMPARE(VQ::Math::floatBits(toFloat(1e-60)), VQ::Math::floatBits(0.0F));
        QCOMPARE(VQ::Math::floatBits(toFloat(-1e-60)), VQ::Math::floatBits(-0.0F));
    }

    void numbersJustBeyondTheLargestFloatBecomeThatOne() {
        const float largest = std::numeric_limits<float>::max();
        const double tie = double{largest} + std::ldexp(1.0, 103);
        for (const double value : {std::nextafter(double{largest}, HUGE_VAL), std::nextafter(tie, 0.0)}) {
            QCOMPARE(toFloat(value), largest);
            QCOMPARE(toFloat(-value), -largest);
        }
        QCOMPARE(toFloat(tie), std::numeric_limits<float>::infinity());
        QCOMPARE(toFloat(-tie), -std::numeric_limits<float>::infinity());
    }

    void numbersBeyondTheLargestFloatBecomeInfinite() {
        const double largest = double{std::numeric_limits<float>::max()};
        for (const double value : {largest * 1.001, 1e39, std::numeric_limits<double>::max(), HUGE_VAL}) {
            QCOMPARE(toFloat(value), std::numeric_limits<float>::infinity());
            QCOMPARE(toFloat(-value), -std::numeric_limits<float>::infinity());
        }
    }
};

QTEST_GUILESS_MAIN(NarrowingTest)
#include "NarrowingTest.moc"
