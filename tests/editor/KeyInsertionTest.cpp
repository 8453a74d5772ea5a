#include "document/KeyInsertion.h"

#include "document/KeyEdits.h"
#include "tests/editor/support/Scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace EditorScene;
using Editor::KeyInsertion;

namespace {

constexpr std::array<Type, 4> allTypes{Type::constant, Type::linear, Type::bezier, Type::bezierAuto};

/// A curve's values from before its first to behind its last key, many between frames.
std::vector<double> shapeOf(const Curve& curve, unsigned int first, unsigned int last) {
    constexpr int partsOfFrame = 16;
    std::vector<double> values;
    for (unsigned int frame = first; frame <= last; ++frame) {
        for (int part = 0; part < partsOfFrame; ++part) {
            values.push_back(double{curve.valueAt(frame + double(part) / partsOfFrame)});
        }
    }
    return values;
}

double furthest(const std::vector<double>& a, const std::vector<double>& b) {
    double distance = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        distance = std::max(distance, std::abs(a[i] - b[i]));
    }
    return distance;
}

// What a curve goes up and down, and by how much it does so within a frame at most, times the frames of a
// handle.
double tolerance(const std::vector<double>& shape, double frames) {
    const auto [lowest, highest] = std::minmax_element(shape.begin(), shape.end());
    double steepest = 0.0;
    for (std::size_t i = 1; i < shape.size(); ++i) {
        steepest = std::max(steepest, std::abs(shape[i] - shape[i - 1]) * 16.0);
    }
    const double extent = std::max(std::abs(*lowest), std::abs(*highest));
    // A smooth key's other handle may lose a hundred-thousandth of itself in both directions; beside that the
    // rounding to floats, 6e-8 of each number, vanishes.
    return 2e-5 * (extent + steepest * frames);
}

/// Four keys; the two in the middle have the given sides and flags.
void build(Scene& scene, Type leaving, Type arriving, Type far, bool isSmooth, bool isSymmetrical) {
    scene.add(0, 0, record(2.0F, Type::bezierAuto, Type::bezierAuto));
    Key* const left = scene.add(0, 10, bezier(-1.0F, {-3.0F, -2.0F}, {4.0F, 2.5F}));
    Key* const right = scene.add(0, 30, bezier(5.0F, {-6.0F, 4.0F}, {3.0F, -2.0F}));
    scene.add(0, 37, record(1.0F, Type::linear, Type::bezierAuto));
    for (Key* const key : {left, right}) {
        key->setSmooth(isSmooth);
        key->setSymmetrical(isSymmetrical);
    }
    left->setRightTangentType(leaving);
    left->setLeftTangentType(far);
    right->setLeftTangentType(arriving);
    right->setRightTangentType(far);
    scene.curve().updateBezierAutoTangents();
}

/// How far a handle reaches into the segment of that many frames as it is drawn: up to 1.
double reach(const Key& key, Side side, double length) {
    const float x = key.getTangentOffset(side).first;
    const double inwards = double{side == Side::left ? -x : x} / length;
    return key.getTangentType(side) == Type::linear ? 1.0 / 3.0 : std::clamp(inwards, 0.0, 1.0);
}

/// Whether all cubics of the curve can be divided exactly.
bool areHandlesApart(const Curve& curve) {
    bool areApart = true;
    for (auto right = ++curve.begin(), left = curve.begin(); right != curve.end(); ++left, ++right) {
        const double length = double((*right).first - (*left).first);
        const double sum =
            reach(*(*left).second, Side::right, length) + reach(*(*right).second, Side::left, length);
        areApart = areApart && sum <= 4.0 / 3.0;
    }
    return areApart;
}

} // namespace

class KeyInsertionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theCurveKeepsItsShape_data();
    void theCurveKeepsItsShape();
    void theCurveKeepsItsShapeAtAnyScale();
    void curvesOutsideTheirKeysKeepTheirShape();
    void handlesOutOfTheOrdinaryKeepTheirShape();
    void handlesThatFillTheirSegmentChangeNothingElsewhere();
    void aStraightLineStaysOne();
    void aStepStaysOne();
    void anEmptyCurveGetsItsFirstKey();
    void aSmoothKeyStaysSmoothWhereItsHandlesKeepTheirDirection();
    void aSmoothKeyWithAnUprightHandleBecomesFree();
    void aSymmetricalKeyBecomesFreeInACubicOnly();
    void keysFurtherAwayKeepTheirTypes();
    void motionCaptureKeepsItsShape();
};

void KeyInsertionTest::theCurveKeepsItsShape_data() {
    QTest::addColumn<int>("leaving");
    QTest::addColumn<int>("arriving");
    QTest::addColumn<int>("far");
    QTest::addColumn<bool>("isSmooth");
    QTest::addColumn<bool>("isSymmetrical");
    for (const Type leaving : allTypes) {
        for (const Type arriving : allTypes) {
            for (const Type far : allTypes) {
                for (const int flags : {0, 1, 2, 3}) {
                    const auto name =
                        QString("%1 to %2, %3 outside, flags %4")
                            .arg(ZT::interpolTypeToString(leaving), ZT::interpolTypeToString(arriving),
                                 ZT::interpolTypeToString(far))
                            .arg(flags);
                    QTest::newRow(qPrintable(name))
                        << static_cast<int>(leaving) << static_cast<int>(arriving) << static_cast<int>(far)
                        << ((flags & 1) != 0) << ((flags & 2) != 0);
                }
            }
        }
    }
}

void KeyInsertionTest::theCurveKeepsItsShape() {
    QFETCH(int, leaving);
    QFETCH(int, arriving);
    QFETCH(int, far);
    QFETCH(bool, isSmooth);
    QFETCH(bool, isSymmetrical);
    Scene scene;
    build(scene, static_cast<Type>(leaving), static_cast<Type>(arriving), static_cast<Type>(far), isSmooth,
          isSymmetrical);
    const auto before = shapeOf(scene.curve(), 0, 45);
    for (const unsigned int frame : {11U, 17U, 29U, 5U, 33U}) {
        const DocumentState state = scene.state();
        checkEdit(scene,
                  [&] { QVERIFY(KeyInsertion(scene.curve(), frame).push(scene.history()) != nullptr); });
        const double distance = furthest(shapeOf(scene.curve(), 0, 45), before);
        QVERIFY2(distance <= tolerance(before, 20.0),
                 qPrintable(QString("%1 at %2").arg(distance).arg(frame)));
        scene.history().undo();
        QCOMPARE(scene.changesSince(state), QString());
    }
    // One after the other, too: each divides what the one before has left.
    for (const unsigned int frame : {20U, 21U, 15U, 4U, 35U, 45U}) {
        KeyInsertion(scene.curve(), frame).push(scene.history());
    }
    const double distance = furthest(shapeOf(scene.curve(), 0, 45), before);
    QVERIFY2(distance <= 3.0 * tolerance(before, 20.0), qPrintable(QString::number(distance)));
}

void KeyInsertionTest::theCurveKeepsItsShapeAtAnyScale() {
    std::mt19937 random(5);
    const auto below = [&random](unsigned int end) { return static_cast<unsigned int>(random() % end); };
    const auto any = [&random](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random);
    };
    int checked = 0;
    for (int time = 0; time < 300; ++time) {
        Scene scene;
        const float scale = std::pow(10.0F, any(-5.0F, 5.0F));
        unsigned int frame = below(20U);
        for (int i = 0; i < 5; ++i) {
            Key* const key = scene.add(0, frame,
                                       record(any(-scale, scale), allTypes[below(4)], allTypes[below(4)],
                                              {any(-4.0F, 0.5F), any(-scale, scale)},
                                              {any(-0.5F, 4.0F), any(-scale, scale)}));
            if (below(3U) == 0U) {
                key->setSmooth(true);
            }
            if (below(3U) == 0U) {
                key->setSymmetrical(true);
            }
            frame += 6U + below(10U);
        }
        scene.curve().updateBezierAutoTangents();
        if (!areHandlesApart(scene.curve())) { // Smooth keys may have theirs turned far into their segments.
            continue;
        }
        ++checked;
        const auto before = shapeOf(scene.curve(), 0, 100);
        for (int i = 0; i < 3; ++i) {
            const unsigned int at = below(90U);
            if (scene.curve().isIndexAvailable(at)) {
                checkEdit(scene, [&] { KeyInsertion(scene.curve(), at).push(scene.history()); });
            }
        }
        const double distance = furthest(shapeOf(scene.curve(), 0, 100), before);
        QVERIFY2(distance <= 3.0 * tolerance(before, 15.0),
                 qPrintable(QString("%1 at scale %2, time %3").arg(distance).arg(double{scale}).arg(time)));
    }
    QVERIFY2(checked > 150, qPrintable(QString::number(checked)));
}

void KeyInsertionTest::curvesOutsideTheirKeysKeepTheirShape() {
    constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();
    for (const Type type : allTypes) {
        Scene scene;
        scene.add(0, 10, record(1.0F, type, type, {-3, 9}, {3, 9}));
        scene.add(0, 20, record(4.0F, type, type, {-3, 9}, {3, 9}));
        const auto before = shapeOf(scene.curve(), 0, 40);
        for (const unsigned int frame : {0U, 9U, 21U, lastFrame}) {
            checkEdit(scene, [&] { KeyInsertion(scene.curve(), frame).push(scene.history()); });
            const double distance = furthest(shapeOf(scene.curve(), 0, 40), before);
            QVERIFY2(distance <= tolerance(before, 10.0),
                     qPrintable(QString("%1 %2").arg(frame).arg(distance)));
        }
        QCOMPARE(scene.key(0, 0)->getValue(), 1.0F);
        QCOMPARE(scene.key(0, lastFrame)->getValue(), 4.0F);
    }
}

void KeyInsertionTest::handlesOutOfTheOrdinaryKeepTheirShape() {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::vector<VQ::Math::Position2D> handles{{500, 40}, {-5, 10},      {0, 0},      {0, 3},
                                                    {10, 0},   {infinity, 1}, {1e-30F, 1}, {20, -50}};
    for (const auto& handle : handles) {
        for (const int flags : {0, 1, 2, 3}) {
            Scene scene;
            const VQ::Math::Position2D usual(4, -3);
            const VQ::Math::Position2D own = (flags & 1) != 0 ? handle : usual;
            const VQ::Math::Position2D other = (flags & 1) != 0 ? usual : handle;
            Key* const left = scene.add(0, 10, bezier(1.0F, {-2, 1}, own));
            Key* const right = scene.add(0, 30, bezier(-2.0F, {-other.x, other.y}, {2, 1}));
            scene.add(0, 0, record(0.0F));
            scene.add(0, 40, record(3.0F));
            if ((flags & 2) != 0) {
                left->setSmooth(true);
                right->setSmooth(true);
            }
            const auto before = shapeOf(scene.curve(), 0, 45);
            for (const unsigned int frame : {11U, 20U, 28U}) {
                checkEdit(scene, [&] { KeyInsertion(scene.curve(), frame).push(scene.history()); });
                const double distance = furthest(shapeOf(scene.curve(), 0, 45), before);
                QVERIFY2(distance <= 2.0 * tolerance(before, 20.0),
                         qPrintable(QString("%1, handle %2").arg(distance).arg(double{handle.x})));
            }
        }
    }
}

void KeyInsertionTest::handlesThatFillTheirSegmentChangeNothingElsewhere() {
    Scene scene;
    scene.add(0, 0, record(0.0F));
    scene.add(0, 10, bezier(1.0F, {-2, 1}, {20, 3}));
    scene.add(0, 30, bezier(-2.0F, {-20, 3}, {2, 1}));
    scene.add(0, 40, record(3.0F));
    const auto left = shapeOf(scene.curve(), 0, 9);
    const auto right = shapeOf(scene.curve(), 30, 45);
    const double value = double{scene.curve().valueAt(13)};
    checkEdit(scene, [&] { KeyInsertion(scene.curve(), 13).push(scene.history()); });
    QVERIFY(furthest(shapeOf(scene.curve(), 0, 9), left) <= tolerance(left, 10.0));
    QVERIFY(furthest(shapeOf(scene.curve(), 30, 45), right) <= tolerance(right, 10.0));
    QVERIFY(std::abs(double{scene.curve().valueAt(13)} - value) <= 1e-5);
}

void KeyInsertionTest::aStraightLineStaysOne() {
    Scene scene;
    scene.add(0, 10, record(1.0F));
    scene.add(0, 30, record(2.0F));
    Key* const key = KeyInsertion(scene.curve(), 15).push(scene.history());
    QCOMPARE(key->getValue(), 1.25F);
    QCOMPARE(key->getTangentType(Side::left), Type::linear);
    QCOMPARE(key->getTangentType(Side::right), Type::linear);
    QCOMPARE(scene.key(0, 10)->getTangentType(Side::right), Type::linear);
}

void KeyInsertionTest::aStepStaysOne() {
    Scene scene;
    scene.add(0, 10, record(1.0F, Type::linear, Type::constant));
    scene.add(0, 30, record(2.0F, Type::bezier, Type::linear));
    Key* const key = KeyInsertion(scene.curve(), 15).push(scene.history());
    QCOMPARE(key->getValue(), 1.0F);
    QCOMPARE(scene.curve().valueAt(29.99), 1.0F);
    QCOMPARE(scene.curve().valueAt(30), 2.0F);
}

void KeyInsertionTest::anEmptyCurveGetsItsFirstKey() {
    Scene scene;
    checkEdit(scene, [&] { KeyInsertion(scene.curve(), 15).push(scene.history()); });
    QCOMPARE(scene.key(0, 15)->getValue(), 0.0F);
}

void KeyInsertionTest::aSmoothKeyStaysSmoothWhereItsHandlesKeepTheirDirection() {
    Scene scene;
    Key* const left = scene.add(0, 10, bezier(1.0F, {-4, -2}, {8, 4}));
    Key* const right = scene.add(0, 30, bezier(5.0F, {-3, -1}, {6, 2}));
    left->setSmooth(true);
    right->setSmooth(true);
    KeyInsertion(scene.curve(), 18).push(scene.history());
    QVERIFY(left->isSmooth());
    QVERIFY(right->isSmooth());
}

void KeyInsertionTest::aSmoothKeyWithAnUprightHandleBecomesFree() {
    Scene scene;
    Key* const left = scene.add(0, 10, bezier(1.0F, {4, -2}, {-8, 4})); // It points out of its segment.
    scene.add(0, 30, record(5.0F));
    scene.add(0, 0, record(5.0F));
    left->setSmooth(true);
    const auto before = shapeOf(scene.curve(), 0, 30);
    KeyInsertion(scene.curve(), 18).push(scene.history());
    QVERIFY(!left->isSmooth());
    QVERIFY(furthest(shapeOf(scene.curve(), 0, 30), before) <= tolerance(before, 20.0));
}

void KeyInsertionTest::aSymmetricalKeyBecomesFreeInACubicOnly() {
    Scene scene;
    Key* const left = scene.add(0, 10, bezier(1.0F, {-4, -2}, {4, 2}));
    left->setSymmetrical(true);
    Key* const right = scene.add(0, 30, record(5.0F, Type::constant, Type::constant));
    KeyInsertion(scene.curve(), 18).push(scene.history());
    QVERIFY(left->isSymmetrical());
    scene.history().undo();
    right->setLeftTangentType(Type::linear);
    KeyInsertion(scene.curve(), 18).push(scene.history());
    QVERIFY(!left->isSymmetrical());
    QVERIFY(left->getTangentOffset(Side::left) == qMakePair(-4.0F, -2.0F));
}

void KeyInsertionTest::keysFurtherAwayKeepTheirTypes() {
    Scene scene;
    for (unsigned int frame = 0; frame <= 40; frame += 10) {
        scene.add(0, frame, record(static_cast<float>(frame % 3U), Type::bezierAuto, Type::bezierAuto));
    }
    KeyInsertion(scene.curve(), 25).push(scene.history());
    for (const unsigned int frame : {0U, 10U, 40U}) {
        QCOMPARE(scene.key(0, frame)->getTangentType(Side::left), Type::bezierAuto);
        QCOMPARE(scene.key(0, frame)->getTangentType(Side::right), Type::bezierAuto);
    }
    QCOMPARE(scene.key(0, 20)->getTangentType(Side::right), Type::bezier);
}

// Values of some tens of degrees, as joints have them.
void KeyInsertionTest::motionCaptureKeepsItsShape() {
    std::mt19937 random(23);
    Scene scene;
    float value = 0.0F;
    for (unsigned int frame = 0; frame <= 200; frame += 2) {
        value += std::uniform_real_distribution<float>(-9.0F, 9.0F)(random);
        scene.add(0, frame, record(value, Type::bezierAuto, Type::bezierAuto));
    }
    const auto before = shapeOf(scene.curve(), 0, 201);
    for (unsigned int frame = 1; frame < 200; frame += 2) {
        KeyInsertion(scene.curve(), frame).push(scene.history());
    }
    QCOMPARE(scene.curve().size(), std::size_t{201});
    QVERIFY(furthest(shapeOf(scene.curve(), 0, 201), before) <= tolerance(before, 2.0));
}

QTEST_GUILESS_MAIN(KeyInsertionTest)
#include "KeyInsertionTest.moc"
