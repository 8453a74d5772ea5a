#include "base/math/BezierTangents.h"

#include "AnyFloat.h"

#include <QtTest>

#include <cmath>

using Records::Position2D;
using VQ::Math::computeBezierKeyTangents;

namespace {

using Handles = std::pair<Position2D, Position2D>;

// Distances as they stand between frames.
rc::Gen<float> distance() {
    return rc::gen::map(
        rc::gen::suchThat(Records::anyFrame(), [](unsigned int frames) { return frames > 0; }),
        [](unsigned int frames) { return static_cast<float>(frames); });
}

bool isFinite(const Position2D& handle) {
    return std::isfinite(handle.x) && std::isfinite(handle.y);
}

bool isWithin(float value, float end) {
    return end < 0.0F ? value >= end && value <= 0.0F : value >= 0.0F && value <= end;
}

/// Distances of a key from its neighbours, in frames and in value.
struct Neighbours {
    float dxPrevious;
    float dxNext;
    float dyPrevious;
    float dyNext;
};

Neighbours anyNeighbours() {
    return {*Records::anyFloat(), *Records::anyFloat(), *Records::anyFloat(), *Records::anyFloat()};
}

} // namespace

class BezierTangentsTest : public QObject {
    Q_OBJECT

private slots:
    void handlesAreFiniteForEveryInput() {
        QVERIFY(rc::check([] {
            const auto [dxPrevious, dxNext, dyPrevious, dyNext] = anyNeighbours();
            const Handles handles = computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, dyNext);
            RC_ASSERT(isFinite(handles.first) && isFinite(handles.second));
        }));
    }

    void handlesAreFiniteForEveryMixOfRemarkableInputs() {
        for (const float dxPrevious : Records::remarkableFloats()) {
            for (const float dxNext : Records::remarkableFloats()) {
                for (const float dyPrevious : Records::remarkableFloats()) {
                    for (const float dyNext : Records::remarkableFloats()) {
                        const Handles handles =
                            computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, dyNext);
                        QVERIFY(isFinite(handles.first) && isFinite(handles.second));
                    }
                }
            }
        }
    }

    void eachHandleSpansAThirdOfItsSegment() {
        QVERIFY(rc::check([] {
            const float dxPrevious = *distance();
            const float dxNext = *distance();
            const float dyPrevious = *Records::anyFloat();
            const Handles handles =
                computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, *Records::anyFloat());
            RC_ASSERT(handles.first.x == -dxPrevious / 3.0F);
            RC_ASSERT(handles.second.x == dxNext / 3.0F);
        }));
    }

    void aSideWithoutUsableDistanceHasNoHandle_data() {
        QTest::addColumn<float>("dx");
        QTest::newRow("zero") << 0.0F;
        QTest::newRow("negative zero") << -0.0F;
        QTest::newRow("negative") << -3.0F;
        QTest::newRow("infinite") << std::numeric_limits<float>::infinity();
        QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN();
    }

    void aSideWithoutUsableDistanceHasNoHandle() {
        QFETCH(float, dx);
        const Handles withoutPrevious = computeBezierKeyTangents(dx, 3.0F, 1.0F, 1.0F);
        QCOMPARE(withoutPrevious.first, Position2D(0.0F, 0.0F));
        QCOMPARE(withoutPrevious.second, Position2D(1.0F, 0.0F));
        const Handles withoutNext = computeBezierKeyTangents(3.0F, dx, 1.0F, 1.0F);
        QCOMPARE(withoutNext.first, Position2D(-1.0F, 0.0F));
        QCOMPARE(withoutNext.second, Position2D(0.0F, 0.0F));
    }

    void aHandleOfNoLengthIsAZeroWithoutSign() {
        for (const float dx : {0.0F, -0.0F}) {
            const Handles handles = computeBezierKeyTangents(dx, dx, 1.0F, 1.0F);
            QVERIFY(!std::signbit(handles.first.x) && !std::signbit(handles.first.y));
            QVERIFY(!std::signbit(handles.second.x) && !std::signbit(handles.second.y));
        }
    }

    void extremaAndKeysBesideAnEqualNeighbourAreFlat_data() {
        QTest::addColumn<float>("dyPrevious");
        QTest::addColumn<float>("dyNext");
        QTest::newRow("peak") << 2.0F << -1.0F;
        QTest::newRow("dip") << -1.0F << 2.0F;
        QTest::newRow("level before") << 0.0F << 5.0F;
        QTest::newRow("level after") << -5.0F << 0.0F;
        QTest::newRow("level on both sides") << 0.0F << 0.0F;
        QTest::newRow("level with negative zero") << -0.0F << 5.0F;
        QTest::newRow("smallest peak") << VQ::Math::floatFromBits(1) << -VQ::Math::floatFromBits(1);
        QTest::newRow("unbounded") << std::numeric_limits<float>::infinity() << 1.0F;
        QTest::newRow("undefined") << 1.0F << std::numeric_limits<float>::quiet_NaN();
    }

    void extremaAndKeysBesideAnEqualNeighbourAreFlat() {
        QFETCH(float, dyPrevious);
        QFETCH(float, dyNext);
        const Handles handles = computeBezierKeyTangents(3.0F, 6.0F, dyPrevious, dyNext);
        QCOMPARE(handles.first, Position2D(-1.0F, 0.0F));
        QCOMPARE(handles.second, Position2D(2.0F, 0.0F));
    }

    void theSlopeIsTheMeanOfBothSlopesWeightedByDistance() {
        // Slopes 1 over 3 frames and 2 over 6 frames: (3 + 12) / 9.
        const Handles handles = computeBezierKeyTangents(3.0F, 6.0F, 3.0F, 12.0F);
        QCOMPARE(handles.first, Position2D(-1.0F, -5.0F / 3.0F));
        QCOMPARE(handles.second, Position2D(2.0F, 10.0F / 3.0F));
    }

    void keysOnAStraightLineKeepItsSlope() {
        const Handles handles = computeBezierKeyTangents(3.0F, 9.0F, -1.5F, -4.5F);
        QCOMPARE(handles.first, Position2D(-1.0F, 0.5F));
        QCOMPARE(handles.second, Position2D(3.0F, -1.5F));
    }

    void theSlopeIsAtMostThreeTimesTheFlatterOne() {
        const Handles handles = computeBezierKeyTangents(3.0F, 3.0F, 1.0F, 100.0F);
        QCOMPARE(handles.first, Position2D(-1.0F, -1.0F));
        QCOMPARE(handles.second, Position2D(1.0F, 1.0F));
    }

    void handlesEndBetweenTheKeyAndItsNeighbour() {
        QVERIFY(rc::check([] {
            const float dxPrevious = *distance();
            const float dxNext = *distance();
            const float dyPrevious = *Records::anyFiniteFloat();
            const float dyNext = *Records::anyFiniteFloat();
            const Handles handles = computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, dyNext);
            RC_ASSERT(isWithin(-handles.first.y, dyPrevious));
            RC_ASSERT(isWithin(handles.second.y, dyNext));
        }));
    }

    void bothHandlesHaveOneSlope() {
        QVERIFY(rc::check([] {
            const float dxPrevious = static_cast<float>(*rc::gen::inRange(1, 10000));
            const float dxNext = static_cast<float>(*rc::gen::inRange(1, 10000));
            const float dyPrevious = static_cast<float>(*rc::gen::inRange(-10000, 10000));
            const float dyNext = static_cast<float>(*rc::gen::inRange(-10000, 10000));
            const auto [left, right] = computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, dyNext);
            const double before = double{left.y} / double{left.x};
            const double after = double{right.y} / double{right.x};
            RC_ASSERT(std::abs(before - after) <= 1e-6 * std::abs(after));
        }));
    }

    void mirroringInTimeExchangesTheHandles() {
        QVERIFY(rc::check([] {
            const auto [dxPrevious, dxNext, dyPrevious, dyNext] = anyNeighbours();
            const Handles handles = computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, dyNext);
            const Handles mirrored = computeBezierKeyTangents(dxNext, dxPrevious, -dyNext, -dyPrevious);
            RC_ASSERT(mirrored.first == Position2D(-handles.second.x, handles.second.y));
            RC_ASSERT(mirrored.second == Position2D(-handles.first.x, handles.first.y));
        }));
    }

    void mirroringInValueTurnsTheHandlesOver() {
        QVERIFY(rc::check([] {
            const auto [dxPrevious, dxNext, dyPrevious, dyNext] = anyNeighbours();
            const Handles handles = computeBezierKeyTangents(dxPrevious, dxNext, dyPrevious, dyNext);
            const Handles mirrored = computeBezierKeyTangents(dxPrevious, dxNext, -dyPrevious, -dyNext);
            RC_ASSERT(mirrored.first == Position2D(handles.first.x, -handles.first.y));
            RC_ASSERT(mirrored.second == Position2D(handles.second.x, -handles.second.y));
        }));
    }
};

QTEST_GUILESS_MAIN(BezierTangentsTest)
#include "BezierTangentsTest.moc"
