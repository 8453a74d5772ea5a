#include "base/math/FloatBits.h"

#include "AnyFloat.h"

#include <QtTest>

using VQ::Math::floatBits;
using VQ::Math::floatFromBits;

class FloatBitsTest : public QObject {
    Q_OBJECT

private slots:
    void knownFloatsHaveTheirBits() {
        QCOMPARE(floatBits(0.0F), 0U);
        QCOMPARE(floatBits(-0.0F), 0x80000000U);
        QCOMPARE(floatBits(1.0F), 0x3f800000U);
        QCOMPARE(floatBits(-2.5F), 0xc0200000U);
        QCOMPARE(floatBits(std::numeric_limits<float>::infinity()), 0x7f800000U);
        QCOMPARE(floatBits(std::numeric_limits<float>::denorm_min()), 1U);
        QCOMPARE(floatBits(std::numeric_limits<float>::max()), 0x7f7fffffU);
    }

    void everyBitPatternSurvivesTheWayThroughAFloat() {
        QVERIFY(rc::check([] {
            const std::uint32_t pattern = *Records::anyFrame();
            RC_ASSERT(floatBits(floatFromBits(pattern)) == pattern);
        }));
        for (const std::uint32_t signalling : {0x7f800001U, 0xffbfffffU}) {
            QCOMPARE(floatBits(floatFromBits(signalling)), signalling);
        }
    }
};

QTEST_GUILESS_MAIN(FloatBitsTest)
#include "FloatBitsTest.moc"
