#include "base/animation/CurveEvaluation.h"
#include "base/animation/MotionCurve.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

using VQ::Animation::evaluateSegment;
using VQ::Animation::MotionCurve;
using VQ::Math::Position2D;
using VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Interpolation::Key;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float greatest = std::numeric_limits<float>::max();

Key bezier(float value, Position2D left, Position2D right) {
    return {value, InterpolationType::bezier, left, InterpolationType::bezier, right};
}

} // namespace

class CurveEvaluationLimitsTest : public QObject {
    Q_OBJECT

private slots:
    void aCubicFromAnInfiniteValueIsInfinite() {
        const Key left = bezier(infinity, {}, {1.0F, 0.0F});
        const Key right = bezier(0.0F, {-1.0F, 0.0F}, {});
        QCOMPARE(evaluateSegment(0, left, 10, right, 5.0), infinity);
    }

    void aCubicBetweenOppositeInfinitiesHasNoValue() {
        const Key left = bezier(infinity, {}, {1.0F, 0.0F});
        const Key right = bezier(-infinity, {-1.0F, 0.0F}, {});
        QVERIFY(std::isnan(evaluateSegment(0, left, 10, right, 5.0)));
    }

    void aCubicBetweenTheGreatestValuesStaysFinite() {
        const Key left = bezier(greatest, {}, {1.0F, 0.0F});
        const Key right = bezier(greatest, {-1.0F, 0.0F}, {});
        QCOMPARE(evaluateSegment(0, left, 10, right, 5.0), greatest);
    }

    void atAKeyItsOwnValueIsReadWhateverTheOtherOneIs() {
        const Key finite = bezier(3.0F, {-1.0F, 0.0F}, {1.0F, 0.0F});
        const Key infinite = bezier(infinity, {-1.0F, 0.0F}, {1.0F, 0.0F});
        QCOMPARE(evaluateSegment(2, finite, 10, infinite, 2.0), 3.0F);
        QCOMPARE(evaluateSegment(2, infinite, 10, finite, 10.0), 3.0F);
    }

    void aHandleThatIsNotFiniteCountsAsZero() {
        for (const Position2D& handle : {Position2D(infinity, 1.0F), Position2D(1.0F, infinity)}) {
            const Key left = bezier(2.0F, {}, handle);
            const Key plain = bezier(2.0F, {}, {});
            const Key right = bezier(6.0F, {-3.0F, 1.0F}, {});
            QCOMPARE(evaluateSegment(10, left, 20, right, 14.0), evaluateSegment(10, plain, 20, right, 14.0));
        }
    }

    // Both controls of such a segment lie on its ends: it runs like the smooth step 3t^2 - 2t^3.
    void handlesOfNoLengthMakeTheCubicOfTheControlsInTheEnds() {
        const Key left = bezier(0.0F, {}, {});
        const Key right = bezier(8.0F, {}, {});
        QCOMPARE(evaluateSegment(0, left, 8, right, 4.0), 4.0F);
        // x and y run alike, whatever the parameter is.
        QCOMPARE(evaluateSegment(0, left, 8, right, 2.0), 2.0F);
    }

    void aHandleAsLongAsTheSegmentIsLeftAsItIs() {
        const Key left = bezier(0.0F, {}, {10.0F, 4.0F});
        const Key longer = bezier(0.0F, {}, {20.0F, 8.0F});
        const Key right = bezier(0.0F, {}, {});
        const float value = evaluateSegment(0, left, 10, right, 5.0);
        QVERIFY(value > 0.0F);
        QCOMPARE(evaluateSegment(0, longer, 10, right, 5.0), value);
    }

    void aHandleThatPointsOutOfTheSegmentKeepsItsHeight() {
        const Key outwards = bezier(0.0F, {}, {-5.0F, 4.0F});
        const Key upright = bezier(0.0F, {}, {0.0F, 4.0F});
        const Key flat = bezier(0.0F, {}, {});
        const Key right = bezier(0.0F, {}, {});
        const float value = evaluateSegment(0, outwards, 10, right, 5.0);
        QCOMPARE(value, evaluateSegment(0, upright, 10, right, 5.0));
        QVERIFY(value > evaluateSegment(0, flat, 10, right, 5.0));
    }

    void aLevelCurveOfTheLargestNumbersIsLevelEverywhere() {
        for (const float value : {std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()}) {
            const Key key = bezier(value, {-2.0F, 0.0F}, {3.0F, 0.0F});
            for (int step = 1; step < 1000; ++step) {
                QCOMPARE(evaluateSegment(0, key, 10, key, step * 0.01), value);
            }
        }
    }

    // What a cubic on the same line gives differs in its last bits, which are all that is left of a zero.
    void aLinearSegmentRunsThroughItsZeroExactly() {
        constexpr unsigned int length = 64;
        for (unsigned int zero = 1; zero < length; ++zero) {
            const auto value = static_cast<float>(zero);
            const Key left{-value, InterpolationType::linear, {}, InterpolationType::linear, {}};
            const Key right{length - value, InterpolationType::linear, {}, InterpolationType::linear, {}};
            QVERIFY(evaluateSegment(0, left, length, right, zero) == 0.0F);
        }
    }

    void theHandleOnALinearSideLiesAThirdAlongTheStraightLine() {
        const Key linear{2.0F, InterpolationType::linear, {}, InterpolationType::linear, {7.0F, 7.0F}};
        const Key third = bezier(2.0F, {}, {4.0F, 2.0F});
        const Key right = bezier(8.0F, {-6.0F, 5.0F}, {});
        for (const double frame : {1.0, 3.0, 6.0, 11.0}) {
            QCOMPARE(evaluateSegment(0, linear, 12, right, frame),
                     evaluateSegment(0, third, 12, right, frame));
        }
        const Key linearEnd{8.0F, InterpolationType::linear, {7.0F, 7.0F}, InterpolationType::linear, {}};
        const Key thirdEnd = bezier(8.0F, {-4.0F, -2.0F}, {});
        const Key left = bezier(2.0F, {}, {6.0F, 5.0F});
        for (const double frame : {1.0, 3.0, 6.0, 11.0}) {
            QCOMPARE(evaluateSegment(0, left, 12, linearEnd, frame),
                     evaluateSegment(0, left, 12, thirdEnd, frame));
        }
    }
};

QTEST_APPLESS_MAIN(CurveEvaluationLimitsTest)
#include "CurveEvaluationLimitsTest.moc"
