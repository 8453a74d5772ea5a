#include "model/FrameConversion.h"
#include "model/EditableMotionCurve.h"

#include <QTest>

#include <rapidcheck.h>

#include <cmath>
#include <limits>

namespace {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;

/// What a moved key makes of the position; it comes from a frame that no row leads to.
unsigned int frameOfAMovedKey(double x) {
    Curve curve;
    Key* const key = curve.insert(123456789U, new Key)->second;
    curve.moveKeys({{key, QPointF(x, 0.0)}});
    return ZT::index(key);
}

} // namespace

class FrameConversionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPositionIsTruncatedTowardZeroAndKeepsItsLowBits_data() {
        QTest::addColumn<double>("x");
        QTest::addColumn<unsigned int>("frame");
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const unsigned int last = std::numeric_limits<unsigned int>::max();
        QTest::newRow("zero") << 0.0 << 0U;
        QTest::newRow("negative zero") << -0.0 << 0U;
        QTest::newRow("whole") << 7.0 << 7U;
        QTest::newRow("not rounded") << 2.9 << 2U;
        QTest::newRow("just below a frame") << std::nextafter(5.0, 0.0) << 4U;
        QTest::newRow("less than a frame below zero") << -0.5 << 0U;
        QTest::newRow("just above -1") << std::nextafter(-1.0, 0.0) << 0U;
        QTest::newRow("-1") << -1.0 << last;
        QTest::newRow("-1.5") << -1.5 << last;
        QTest::newRow("-2") << -2.0 << last - 1U;
        QTest::newRow("past the signed range") << 2147483648.0 << 2147483648U;
        QTest::newRow("the last frame") << 4294967295.75 << last;
        QTest::newRow("2^32") << 4294967296.0 << 0U;
        QTest::newRow("2^32 + 5") << 4294967301.0 << 5U;
        QTest::newRow("-2^32 - 1") << -4294967297.0 << last;
        QTest::newRow("the largest that fits 64 bits")
            << std::nextafter(std::ldexp(1.0, 63), 0.0) << 4294966272U;
        QTest::newRow("the smallest that fits 64 bits") << -std::ldexp(1.0, 63) << 0U;
        QTest::newRow("2^63") << std::ldexp(1.0, 63) << 0U;
        QTest::newRow("far below") << -1e300 << 0U;
        QTest::newRow("infinity") << infinity << 0U;
        QTest::newRow("-infinity") << -infinity << 0U;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0U;
    }
    void aPositionIsTruncatedTowardZeroAndKeepsItsLowBits() {
        QFETCH(double, x);
        QFETCH(unsigned int, frame);
        QCOMPARE(ZT::frameFromPosition(x), frame);
        QCOMPARE(frameOfAMovedKey(x), frame);
    }

    void everyFrameComesBackFromItsPosition() {
        const bool holds = rc::check("a frame plus less than one is that frame", [] {
            const auto frame = *rc::gen::inRange(0U, std::numeric_limits<unsigned int>::max());
            const double fraction = *rc::gen::inRange(0, 1024) / 1024.0;
            RC_ASSERT(ZT::frameFromPosition(static_cast<double>(frame) + fraction) == frame);
            const unsigned int below = 0U - frame;
            RC_ASSERT(ZT::frameFromPosition(-static_cast<double>(frame) - fraction) == below);
        });
        QVERIFY(holds);
    }
};

QTEST_GUILESS_MAIN(FrameConversionTest)

#include "FrameConversionTest.moc"
