#include "base/animation/CurveEvaluation.h"

#include "AnyFloat.h"
#include "base/animation/MotionCurve.h"
#include "base/math/BezierTangents.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <tuple>
#include <utility>

using Records::Key;
using Records::MotionCurve;
using Records::Position2D;
using Records::Type;
using VQ::Animation::evaluate;
using VQ::Animation::evaluateSegment;

namespace {

constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float undefined = std::numeric_limits<float>::quiet_NaN();
constexpr float largest = std::numeric_limits<float>::max();

Key keyWith(float value, Type type, Position2D left = {}, Position2D right = {}) {
    return Records::makeKey(value, type, left, type, right);
}

float valueOf(const Key& left, const Key& right, double frame, unsigned int length) {
    return evaluateSegment(0, left, length, right, frame);
}

// A segment in extended precision, straight from the description of its control points.
struct Reference {
    std::array<long double, 4> x{};
    std::array<long double, 4> y{};

    Reference(const Key& left, const Key& right, long double length)
        : x{0, reach(left.rightTangentOffset.x, length), length - reach(-right.leftTangentOffset.x, length),
            length}
        , y{left.value, left.value + rise(left.rightTangentOffset, 1, length),
            right.value + rise(right.leftTangentOffset, -1, length), right.value} {}

    static long double reach(long double dx, long double length) { return std::clamp(dx, 0.0L, length); }

    static long double rise(const Position2D& offset, int direction, long double length) {
        const long double dx = direction * static_cast<long double>(offset.x);
        return dx > length ? offset.y * length / dx : static_cast<long double>(offset.y);
    }

    static long double at(const std::array<long double, 4>& p, long double t) {
        const long double s = 1 - t;
        return s * s * s * p[0] + 3 * s * s * t * p[1] + 3 * s * t * t * p[2] + t * t * t * p[3];
    }

    long double parameterAt(long double frame) const {
        long double low = 0;
        long double high = 1;
        for (int halving = 0; halving < 64; ++halving) {
            const long double middle = (low + high) / 2;
            (at(x, middle) < frame ? low : high) = middle;
        }
        return (low + high) / 2;
    }

    // Between two parameters a cubic moves by at most three times its longest leg for each unit.
    long double steepest() const {
        return 3 * std::max({std::abs(y[1] - y[0]), std::abs(y[2] - y[1]), std::abs(y[3] - y[2])});
    }
};

Key anyBezierKey(double length, double height) {
    const auto point = [&](double first, double last) {
        const double x = *Records::between(first * length, last * length);
        return Position2D(static_cast<float>(x), static_cast<float>(*Records::between(-height, height)));
    };
    const auto value = static_cast<float>(*Records::between(-height, height));
    const Position2D left = point(-2.0, 0.5);
    return keyWith(value, Type::bezier, left, point(-0.5, 2.0));
}

} // namespace

class CurveEvaluationTest : public QObject {
    Q_OBJECT

private slots:
    void aCurveWithoutKeysIsZero() {
        const MotionCurve curve;
        QCOMPARE(Records::of(evaluate(curve, 0.0)), Records::of(0.0F));
        QCOMPARE(Records::of(evaluate(curve, 1e300)), Records::of(0.0F));
        QVERIFY(std::isnan(evaluate(curve, double{undefined})));
    }

    void aCurveIsConstantOutsideItsKeys() {
        MotionCurve curve;
        curve.insert(10, new Key(keyWith(2.0F, Type::linear)));
        curve.insert(20, new Key(keyWith(7.0F, Type::linear)));
        for (const double frame : {-HUGE_VAL, -1e300, -1.0, 0.0, 9.999, 10.0}) {
            QCOMPARE(Records::of(evaluate(curve, frame)), Records::of(2.0F));
        }
        for (const double frame : {20.0, 20.001, 4294967295.0, 4294967296.5, 1e300, HUGE_VAL}) {
            QCOMPARE(Records::of(evaluate(curve, frame)), Records::of(7.0F));
        }
        QVERIFY(std::isnan(evaluate(curve, double{undefined})));
    }

    void aCurveOfOneKeyIsConstant() {
        MotionCurve curve;
        curve.insert(5, new Key(keyWith(-3.0F, Type::bezier, {-1.0F, 9.0F}, {1.0F, 9.0F})));
        for (const double frame : {-HUGE_VAL, 0.0, 4.5, 5.0, 5.5, HUGE_VAL}) {
            QCOMPARE(Records::of(evaluate(curve, frame)), Records::of(-3.0F));
        }
    }

    void aCurvePassesThroughItsKeys() {
        QVERIFY(rc::check([] {
            MotionCurve curve;
            for (const unsigned int frame :
                 *rc::gen::container<std::set<unsigned int>>(Records::anyFrame())) {
                curve.insert(frame, new Key(*Records::anyKey()));
            }
            for (const auto element : std::as_const(curve)) {
                const float value = evaluate(curve, static_cast<double>(element.first));
                const float expected = element.second->value;
                RC_ASSERT((std::isnan(expected) ? std::isnan(value) : value == expected));
            }
        }));
    }

    void aFrameBelongsToTheSegmentAroundIt() {
        MotionCurve curve;
        curve.insert(0, new Key(keyWith(0.0F, Type::linear)));
        curve.insert(10, new Key(keyWith(10.0F, Type::linear)));
        curve.insert(14, new Key(keyWith(-10.0F, Type::linear)));
        QCOMPARE(Records::of(evaluate(curve, 2.5)), Records::of(2.5F));
        QCOMPARE(Records::of(evaluate(curve, 11.0)), Records::of(5.0F));
    }

    void framesNearTheLastOneAreReached() {
        MotionCurve curve;
        curve.insert(lastFrame - 4, new Key(keyWith(0.0F, Type::linear)));
        curve.insert(lastFrame, new Key(keyWith(4.0F, Type::linear)));
        QCOMPARE(Records::of(evaluate(curve, 4294967291.0)), Records::of(0.0F));
        QCOMPARE(Records::of(evaluate(curve, 4294967292.5)), Records::of(1.5F));
        QCOMPARE(Records::of(evaluate(curve, 4294967294.5)), Records::of(3.5F));
        QCOMPARE(Records::of(evaluate(curve, 4294967295.5)), Records::of(4.0F));
        curve.insert(0, new Key(keyWith(-1.0F, Type::linear)));
        curve.erase(curve.find(lastFrame - 4));
        QVERIFY(std::abs(evaluate(curve, 2147483647.5) - 1.5F) < 1e-6F);
    }

    void aConstantSideHoldsTheEarlierValue_data() {
        QTest::addColumn<int>("leftType");
        QTest::addColumn<int>("rightType");
        for (int type = 0; type < 4; ++type) {
            QTest::addRow("left constant, right %d", type) << 0 << type;
            QTest::addRow("left %d, right constant", type) << type << 0;
        }
    }

    void aConstantSideHoldsTheEarlierValue() {
        QFETCH(int, leftType);
        QFETCH(int, rightType);
        const Key left = keyWith(1.0F, static_cast<Type>(leftType), {}, {3.0F, 5.0F});
        const Key right = keyWith(9.0F, static_cast<Type>(rightType), {-3.0F, 5.0F}, {});
        for (const double frame : {0.0, 0.5, 5.0, 9.999}) {
            QCOMPARE(Records::of(valueOf(left, right, frame, 10)), Records::of(1.0F));
        }
        QCOMPARE(Records::of(valueOf(left, right, 10.0, 10)), Records::of(9.0F));
    }

    void onlyTheTangentsOfTheSegmentCount() {
        const Key left = Records::makeKey(0.0F, Type::constant, {-1.0F, 50.0F}, Type::linear, {1.0F, 50.0F});
        const Key right = Records::makeKey(8.0F, Type::linear, {-1.0F, 50.0F}, Type::constant, {1.0F, 50.0F});
        QCOMPARE(Records::of(valueOf(left, right, 2.0, 8)), Records::of(2.0F));
    }

    void betweenLinearSidesRunsAStraightLine() {
        QVERIFY(rc::check([] {
            const float first = *Records::anyFiniteFloat();
            const float last = *Records::anyFiniteFloat();
            const double part = *Records::between(0.0, 1.0);
            const unsigned int length = 1024;
            const double exact = double{first} + (double{last} - double{first}) * part;
            const float value =
                valueOf(keyWith(first, Type::linear), keyWith(last, Type::linear), part * length, length);
            const double scale = std::abs(double{first}) + std::abs(double{last});
            RC_ASSERT(std::abs(double{value} - exact) <= scale * 1e-7 + double{VQ::Math::floatFromBits(1)});
        }));
    }

    void handlesOnTheLineDrawTheLine_data() {
        QTest::addColumn<int>("leftType");
        QTest::addColumn<int>("rightType");
        QTest::newRow("linear, bezier") << 1 << 2;
        QTest::newRow("bezier, linear") << 2 << 1;
        QTest::newRow("linear, automatic") << 1 << 3;
        QTest::newRow("both bezier") << 2 << 2;
    }

    void handlesOnTheLineDrawTheLine() {
        QFETCH(int, leftType);
        QFETCH(int, rightType);
        const Key left = keyWith(1.0F, static_cast<Type>(leftType), {}, {2.0F, 4.0F});
        const Key right = keyWith(25.0F, static_cast<Type>(rightType), {-5.0F, -10.0F}, {});
        for (double frame = 0.0; frame <= 12.0; frame += 0.125) {
            QVERIFY(std::abs(double{valueOf(left, right, frame, 12)} - (1.0 + 2.0 * frame)) < 2e-6);
        }
    }

    void aLinearSideIgnoresItsHandle() {
        const Key plain = keyWith(0.0F, Type::linear);
        const Key withHandle = keyWith(0.0F, Type::linear, {-3.0F, 70.0F}, {undefined, infinity});
        const Key other = keyWith(6.0F, Type::bezier, {-4.0F, 2.0F}, {4.0F, 2.0F});
        for (const double frame : {0.5, 3.0, 8.0}) {
            QCOMPARE(Records::of(valueOf(withHandle, other, frame, 9)),
                     Records::of(valueOf(plain, other, frame, 9)));
            QCOMPARE(Records::of(valueOf(other, withHandle, frame, 9)),
                     Records::of(valueOf(other, plain, frame, 9)));
        }
    }

    void levelHandlesOfAThirdEaseInAndOut() {
        const Key left = keyWith(0.0F, Type::bezier, {}, {1.0F, 0.0F});
        const Key right = keyWith(100.0F, Type::bezierAuto, {-1.0F, 0.0F}, {});
        for (double t = 0.0; t <= 1.0; t += 1.0 / 64.0) {
            const double expected = 100.0 * t * t * (3.0 - 2.0 * t);
            QVERIFY(std::abs(double{valueOf(left, right, 3.0 * t, 3)} - expected) < 1e-5);
        }
    }

    void overlongHandlesAreScaledBack() {
        const Key left = keyWith(1.0F, Type::bezier, {}, {8.0F, 6.0F});
        const Key right = keyWith(2.0F, Type::bezier, {-16.0F, 12.0F}, {});
        const Key shortLeft = keyWith(1.0F, Type::bezier, {}, {4.0F, 3.0F});
        const Key shortRight = keyWith(2.0F, Type::bezier, {-4.0F, 3.0F}, {});
        for (double frame = 0.0; frame <= 4.0; frame += 0.0625) {
            QCOMPARE(Records::of(valueOf(left, right, frame, 4)),
                     Records::of(valueOf(shortLeft, shortRight, frame, 4)));
        }
        QCOMPARE(left.rightTangentOffset, Position2D(8.0F, 6.0F));
    }

    void handlesOutOfTheSegmentStandUpright() {
        const Key left = keyWith(1.0F, Type::bezier, {}, {-2.0F, 3.0F});
        const Key right = keyWith(2.0F, Type::bezier, {5.0F, -3.0F}, {});
        const Key uprightLeft = keyWith(1.0F, Type::bezier, {}, {0.0F, 3.0F});
        const Key uprightRight = keyWith(2.0F, Type::bezier, {0.0F, -3.0F}, {});
        for (double frame = 0.0; frame <= 4.0; frame += 0.0625) {
            QCOMPARE(Records::of(valueOf(left, right, frame, 4)),
                     Records::of(valueOf(uprightLeft, uprightRight, frame, 4)));
        }
    }

    void handlesThatAreNotFiniteCountAsZero() {
        const Key zero = keyWith(1.0F, Type::bezier);
        const Key right = keyWith(2.0F, Type::bezier, {-1.0F, 1.0F}, {1.0F, 1.0F});
        for (const Position2D offset :
             {Position2D(undefined, 1.0F), Position2D(1.0F, undefined), Position2D(infinity, 1.0F),
              Position2D(1.0F, -infinity), Position2D(-infinity, undefined)}) {
            const Key broken = keyWith(1.0F, Type::bezier, offset, offset);
            QCOMPARE(Records::of(valueOf(broken, right, 1.5, 4)), Records::of(valueOf(zero, right, 1.5, 4)));
            QCOMPARE(Records::of(valueOf(right, broken, 1.5, 4)), Records::of(valueOf(right, zero, 1.5, 4)));
        }
    }

    // With level handles the value never falls along the cubic, so that it falls along frames only where they
    // turn.
    void framesGrowSteadilyAlongACubicWithAnyHandles() {
        QVERIFY(rc::check([] {
            const float reach = static_cast<float>(*Records::between(-10.0, 100.0));
            const float reachBack = static_cast<float>(*Records::between(-100.0, 10.0));
            const Key left = keyWith(-1.0F, Type::bezier, {}, {reach, 0.0F});
            const Key right = keyWith(1.0F, Type::bezier, {reachBack, 0.0F}, {});
            float previous = -1.0F;
            for (int step = 1; step <= 500; ++step) {
                const float value = valueOf(left, right, 10.0 * step / 500.0, 10);
                RC_ASSERT(value >= previous - std::numeric_limits<float>::epsilon());
                previous = value;
            }
        }));
    }

    void theFrameReadIsTheOneAskedForWithinTheStatedBound() {
        QVERIFY(rc::check([] {
            const unsigned int length = *rc::gen::element(1U, 3U, 10U, 1000U, 4294967295U);
            const double height = *rc::gen::element(1.0, 1e-3, 1e6);
            const Key left = anyBezierKey(length, height);
            const Key right = anyBezierKey(length, height);
            const Reference reference(left, right, static_cast<long double>(length));
            const double frame = *Records::between(0.0, static_cast<double>(length));
            const auto bound = static_cast<long double>(length) * 1e-12L;
            const long double first = reference.parameterAt(static_cast<long double>(frame) - bound);
            const long double last = reference.parameterAt(static_cast<long double>(frame) + bound);
            const long double middle = reference.parameterAt(static_cast<long double>(frame));
            const auto value = static_cast<long double>(valueOf(left, right, frame, length));
            const long double slack = reference.steepest() * std::max(middle - first, last - middle);
            const long double rounding = 7e-8L * std::abs(value) + 1e-14L * static_cast<long double>(height);
            RC_ASSERT(std::abs(value - Reference::at(reference.y, middle)) <= slack + rounding);
        }));
    }

    void aSegmentBetweenAutomaticKeysStaysBetweenTheirValues() {
        QVERIFY(rc::check([] {
            std::array<float, 4> values{};
            std::array<unsigned int, 4> frames{};
            for (std::size_t at = 0; at < values.size(); ++at) {
                values[at] = *Records::anyFiniteFloat();
                frames[at] = (at == 0 ? 0 : frames[at - 1]) + 1 + *Records::anyFrame() / 8;
            }
            std::array<Key, 4> keys{};
            for (std::size_t at = 0; at < values.size(); ++at) {
                keys[at].value = values[at];
            }
            for (const std::size_t at : {std::size_t{1}, std::size_t{2}}) {
                std::tie(keys[at].leftTangentOffset, keys[at].rightTangentOffset) =
                    VQ::Math::computeBezierKeyTangents(static_cast<float>(frames[at] - frames[at - 1]),
                                                       static_cast<float>(frames[at + 1] - frames[at]),
                                                       values[at] - values[at - 1],
                                                       values[at + 1] - values[at]);
            }
            const double low = double{std::min(values[1], values[2])};
            const double high = double{std::max(values[1], values[2])};
            // The differences that the tangents are computed from are rounded to a float.
            const double rounding =
                (std::abs(low) + std::abs(high)) * 1.2e-7 + double{VQ::Math::floatFromBits(1)};
            for (int sample = 0; sample < 20; ++sample) {
                const double frame =
                    *Records::between(static_cast<double>(frames[1]), static_cast<double>(frames[2]));
                const float value = evaluateSegment(frames[1], keys[1], frames[2], keys[2], frame);
                RC_ASSERT(std::isfinite(value));
                RC_ASSERT(double{value} >= low - rounding && double{value} <= high + rounding);
            }
        }));
    }

    void aLevelSegmentStaysAtItsValue_data() {
        QTest::addColumn<float>("value");
        QTest::newRow("zero") << 0.0F;
        QTest::newRow("tenth") << 0.1F;
        QTest::newRow("smallest") << VQ::Math::floatFromBits(1);
        QTest::newRow("largest") << largest;
        QTest::newRow("lowest") << -largest;
    }

    void aLevelSegmentStaysAtItsValue() {
        QFETCH(float, value);
        const Key left = keyWith(value, Type::bezierAuto, {}, {10.0F / 3.0F, 0.0F});
        const Key right = keyWith(value, Type::bezierAuto, {-10.0F / 3.0F, 0.0F}, {});
        for (double frame = 0.0; frame <= 10.0; frame += 0.03125) {
            QCOMPARE(Records::of(valueOf(left, right, frame, 10)), Records::of(value));
        }
    }

    void aSegmentOfNoLengthHasTheLaterValue() {
        QCOMPARE(
            Records::of(evaluateSegment(5, keyWith(1.0F, Type::bezier), 5, keyWith(2.0F, Type::bezier), 5.0)),
            Records::of(2.0F));
    }

    void aSegmentAtNoFrameIsNoNumber() {
        QVERIFY(std::isnan(
            valueOf(keyWith(1.0F, Type::constant), keyWith(2.0F, Type::linear), double{undefined}, 5)));
    }
};

QTEST_GUILESS_MAIN(CurveEvaluationTest)
#include "CurveEvaluationTest.moc"
