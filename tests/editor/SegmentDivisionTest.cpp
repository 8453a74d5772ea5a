#include "document/SegmentDivision.h"

#include "base/animation/CurveEvaluation.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>

using VQ::Animation::evaluateSegment;
using VQ::Math::Position2D;
using VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Interpolation::Key;

namespace {

struct Segment {
    unsigned int leftFrame;
    Key left;
    unsigned int rightFrame;
    Key right;
};

double valueAt(const Segment& segment, double frame) {
    return double{evaluateSegment(segment.leftFrame, segment.left, segment.rightFrame, segment.right, frame)};
}

// As far as values and controls of the segment go up and down.
double height(const Segment& segment) {
    const double left = double{segment.left.value};
    const double right = double{segment.right.value};
    return std::max({std::abs(left), std::abs(right), std::abs(double{segment.left.rightTangentOffset.y}),
                     std::abs(double{segment.right.leftTangentOffset.y})});
}

// The steepest slope between neighbouring samples, in value units by frame.
double steepness(const Segment& segment) {
    constexpr int samples = 1000;
    const double length = static_cast<double>(segment.rightFrame) - static_cast<double>(segment.leftFrame);
    double steepest = 0.0;
    for (int i = 0; i < samples; ++i) {
        const double here = segment.leftFrame + length * i / samples;
        const double rise = valueAt(segment, here + length / samples) - valueAt(segment, here);
        steepest = std::max(steepest, std::abs(rise) / (length / samples));
    }
    return steepest;
}

// The furthest that the two parts are from the whole.
double distance(const Segment& whole, unsigned int frame) {
    const auto division =
        Editor::divideSegment(whole.leftFrame, whole.left, whole.rightFrame, whole.right, frame);
    Segment first{whole.leftFrame, whole.left, frame, division.key};
    first.left.rightTangentType = InterpolationType::bezier;
    first.left.rightTangentOffset = division.leftsHandle;
    Segment second{frame, division.key, whole.rightFrame, whole.right};
    second.right.leftTangentType = InterpolationType::bezier;
    second.right.leftTangentOffset = division.rightsHandle;
    constexpr int samples = 500;
    double furthest = 0.0;
    for (int i = 0; i <= samples; ++i) {
        const double at =
            whole.leftFrame +
            (static_cast<double>(whole.rightFrame) - static_cast<double>(whole.leftFrame)) * i / samples;
        const double divided = at <= frame ? valueAt(first, at) : valueAt(second, at);
        furthest = std::max(furthest, std::abs(divided - valueAt(whole, at)));
    }
    return furthest;
}

// Numbers of the parts are rounded to floats: values and handles up and down by 2^-24 of the height, and
// handles in frames by 2^-24 of the length, which at the steepest place is worth that many value units. Some
// of these add up.
double tolerance(const Segment& segment) {
    const double length = static_cast<double>(segment.rightFrame) - static_cast<double>(segment.leftFrame);
    return 8.0 * std::ldexp(height(segment) + length * steepness(segment), -24);
}

Key key(float value, InterpolationType type, Position2D handle) {
    Key made;
    made.value = value;
    made.leftTangentType = type;
    made.leftTangentOffset = handle;
    made.rightTangentType = type;
    made.rightTangentOffset = handle;
    return made;
}

} // namespace

class SegmentDivisionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePartsAreTheWhole_data();
    void thePartsAreTheWhole();
    void anySegmentCanBeDivided();
    void handlesThatFillTheSegmentKeepValueAndSlopes();
    void handlesPointIntoTheirSegments();
};

void SegmentDivisionTest::thePartsAreTheWhole_data() {
    QTest::addColumn<int>("leaving");
    QTest::addColumn<int>("arriving");
    QTest::addColumn<QPointF>("first");
    QTest::addColumn<QPointF>("second");
    const auto cubic = static_cast<int>(InterpolationType::bezier);
    const auto linear = static_cast<int>(InterpolationType::linear);
    const auto automatic = static_cast<int>(InterpolationType::bezierAuto);
    QTest::newRow("plain") << cubic << cubic << QPointF(10, 5) << QPointF(-12, 1);
    QTest::newRow("automatic") << automatic << automatic << QPointF(10, 5) << QPointF(-12, 1);
    QTest::newRow("from linear") << linear << cubic << QPointF(99, 99) << QPointF(-12, 1);
    QTest::newRow("to linear") << cubic << linear << QPointF(10, 5) << QPointF(99, 99);
    QTest::newRow("long handles") << cubic << cubic << QPointF(75, 50) << QPointF(-9, 20);
    QTest::newRow("handles that point outwards") << cubic << cubic << QPointF(-5, 10) << QPointF(5, -10);
    QTest::newRow("no handles") << cubic << cubic << QPointF(0, 0) << QPointF(0, 0);
    QTest::newRow("upright handles") << cubic << cubic << QPointF(0, 7) << QPointF(0, -7);
    QTest::newRow("an overhang") << cubic << cubic << QPointF(19, 0) << QPointF(-19, 0);
    QTest::newRow("handles that are not finite")
        << cubic << cubic << QPointF(qInf(), 1) << QPointF(-1, qQNaN());
}

void SegmentDivisionTest::thePartsAreTheWhole() {
    QFETCH(int, leaving);
    QFETCH(int, arriving);
    QFETCH(QPointF, first);
    QFETCH(QPointF, second);
    const auto toHandle = [](const QPointF& point) {
        return Position2D(static_cast<float>(point.x()), static_cast<float>(point.y()));
    };
    const Segment segment{10, key(1.0F, static_cast<InterpolationType>(leaving), toHandle(first)), 40,
                          key(-3.0F, static_cast<InterpolationType>(arriving), toHandle(second))};
    for (unsigned int frame = 11; frame < 40; ++frame) {
        const double found = distance(segment, frame);
        QVERIFY2(found <= tolerance(segment), qPrintable(QString("%1 at frame %2").arg(found).arg(frame)));
    }
}

void SegmentDivisionTest::anySegmentCanBeDivided() {
    std::mt19937 random(17);
    const auto below = [&random](unsigned int end) { return static_cast<unsigned int>(random() % end); };
    const auto between = [&random](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random);
    };
    for (int time = 0; time < 300; ++time) {
        const unsigned int leftFrame = below(1000U);
        const unsigned int length = 2U + below(500U);
        const float scale = std::pow(10.0F, between(-6.0F, 6.0F));
        const auto bezier = InterpolationType::bezier;
        // One may be longer than the segment where the other is no longer than a third.
        const float shorter = 0.33F * static_cast<float>(length);
        const bool isLeftLong = below(2) == 0;
        const float left = isLeftLong ? 5.0F * shorter : shorter;
        const float right = isLeftLong ? shorter : 5.0F * shorter;
        const Segment segment{
            leftFrame, key(between(-scale, scale), bezier, {between(0.0F, left), between(-scale, scale)}),
            leftFrame + length,
            key(between(-scale, scale), bezier, {between(-right, 0.0F), between(-scale, scale)})};
        const unsigned int frame = leftFrame + 1U + below(length - 1U);
        const double found = distance(segment, frame);
        QVERIFY2(found <= tolerance(segment),
                 qPrintable(QString("%1, not %2").arg(found).arg(tolerance(segment))));
    }
}

void SegmentDivisionTest::handlesThatFillTheSegmentKeepValueAndSlopes() {
    const auto bezier = InterpolationType::bezier;
    const Segment segment{10, key(1.0F, bezier, {30, 6}), 40, key(-3.0F, bezier, {-45, 3})};
    const auto isParallel = [](const Position2D& a, const Position2D& b) {
        const double across = double{a.x} * double{b.y} - double{a.y} * double{b.x};
        return std::abs(across) <= 1e-5 * double{a.norm()} * double{b.norm()};
    };
    for (unsigned int frame = 11; frame < 40; ++frame) {
        const auto division = Editor::divideSegment(10, segment.left, 40, segment.right, frame);
        QVERIFY(std::abs(double{division.key.value} - valueAt(segment, frame)) <= tolerance(segment));
        QVERIFY(isParallel(division.leftsHandle, segment.left.rightTangentOffset));
        QVERIFY(isParallel(division.rightsHandle, segment.right.leftTangentOffset));
        QVERIFY(isParallel(division.key.leftTangentOffset, division.key.rightTangentOffset));
    }
}

void SegmentDivisionTest::handlesPointIntoTheirSegments() {
    const auto bezier = InterpolationType::bezier;
    const auto division =
        Editor::divideSegment(0, key(0.0F, bezier, {9, 3}), 4294967295U, key(1.0F, bezier, {-9, 3}), 7);
    QVERIFY(division.key.leftTangentOffset.x <= 0.0F);
    QVERIFY(division.key.rightTangentOffset.x >= 0.0F);
    QVERIFY(division.leftsHandle.x >= 0.0F);
    QVERIFY(division.rightsHandle.x <= 0.0F);
    QCOMPARE(division.key.leftTangentType, bezier);
    QCOMPARE(division.key.rightTangentType, bezier);
}

QTEST_GUILESS_MAIN(SegmentDivisionTest)
#include "SegmentDivisionTest.moc"
