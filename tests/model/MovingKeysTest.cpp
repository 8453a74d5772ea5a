#include "LetteredCurve.h"

#include <QtTest>

#include <cmath>
#include <limits>

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

class MovingKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void movingUpMovesTheLastKeyFirst() {
        LetteredCurve c({1, 2, 3});
        c.curve.moveKeys({{c[0], {2, 0}}, {c[1], {3, 0}}, {c[2], {4, 0}}});
        QCOMPARE(c.layout(), QString("a@2 b@3 c@4"));
        QCOMPARE(c.recorder.take(), QString("c.indexChanged(4), b.indexChanged(3), a.indexChanged(2), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(4, 3)"));
    }

    void movingDownMovesTheFirstKeyFirst() {
        LetteredCurve c({1, 2, 3});
        c.curve.moveKeys({{c[0], {0, 0}}, {c[1], {1, 0}}, {c[2], {2, 0}}});
        QCOMPARE(c.layout(), QString("a@0 b@1 c@2"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(0), b.indexChanged(1), c.indexChanged(2), "
                                            "curve.keysChanged(), curve.greaterIndexChanged(2, 3)"));
    }

    // The first key alone decides: b and c, which move up, then meet in ascending order.
    void theDirectionIsChosenFromTheFirstKeyAlone() {
        LetteredCurve c({5, 6, 7});
        c.curve.moveKeys({{c[0], {4, 0}}, {c[1], {7, 0}}, {c[2], {8, 0}}});
        QCOMPARE(c.layout(), QString("a@4 b@6 c@8"));
    }

    // The null key counts as standing at frame 0: sent up it turns the order, sent nowhere it does not.
    void aSkippedKeyCanDecideTheDirection_data() {
        QTest::addColumn<double>("target");
        QTest::addColumn<QString>("layout");
        QTest::newRow("up") << 5.0 << "a@2 b@3";
        QTest::newRow("nowhere") << 0.0 << "a@1 b@3";
    }
    void aSkippedKeyCanDecideTheDirection() {
        QFETCH(double, target);
        QFETCH(QString, layout);
        LetteredCurve c({1, 2});
        c.curve.moveKeys({{nullptr, {target, 0}}, {c[0], {2, 0}}, {c[1], {3, 0}}});
        QCOMPARE(c.layout(), layout);
    }

    void aKeyOfAnotherCurveCanDecideTheDirection() {
        LetteredCurve c({5, 6});
        LetteredCurve other({1});
        c.curve.moveKeys({{other[0], {0, 0}}, {c[0], {6, 0}}, {c[1], {7, 0}}});
        QCOMPARE(c.layout(), QString("a@5 b@7"));
        QCOMPARE(other.layout(), QString("a@1"));
    }

    void framesAreComparedWithoutSign() {
        LetteredCurve c({2147483647U, 2147483648U});
        c.curve.moveKeys({{c[0], {2147483648.0, 0}}, {c[1], {2147483649.0, 0}}});
        QCOMPARE(c.layout(), QString("a@2147483648 b@2147483649"));
    }

    void theValueIsSetBeforeTheFrame() {
        LetteredCurve c({1});
        c.curve.moveKeys({{c[0], {7, 2.5}}});
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(2.5), a.indexChanged(7), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(7, 1)"));
    }

    void movingOntoAKeyThatStaysChangesOnlyTheValue() {
        LetteredCurve c({1, 2});
        c.curve.moveKeys({{c[0], {2, 5}}});
        QCOMPARE(c.layout(), QString("a@1 b@2"));
        QCOMPARE(c[0]->getValue(), 5.0F);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), curve.keysChanged()"));
    }

    void targetsAreTruncated_data() {
        QTest::addColumn<double>("target");
        QTest::addColumn<unsigned int>("frame");
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("4.99") << 4.99 << 4U;
        QTest::newRow("-0.5") << -0.5 << 0U;
        QTest::newRow("-1") << -1.0 << 4294967295U;
        QTest::newRow("2^32 + 3") << 4294967299.0 << 3U;
        QTest::newRow("NaN") << std::nan("") << 0U;
        QTest::newRow("infinity") << infinity << 0U;
        QTest::newRow("-infinity") << -infinity << 0U;
        QTest::newRow("1e300") << 1e300 << 0U;
        QTest::newRow("2^63") << 9223372036854775808.0 << 0U;
        QTest::newRow("-2^63") << -9223372036854775808.0 << 0U;
    }
    void targetsAreTruncated() {
        QFETCH(double, target);
        QFETCH(unsigned int, frame);
        LetteredCurve c({10});
        c.curve.moveKeys({{c[0], {target, 0}}});
        QCOMPARE(ZT::index(c[0]), frame);
    }

    void aValueBeyondFloatBecomesInfinite() {
        LetteredCurve c({10});
        c.curve.moveKeys({{c[0], {10, -1e300}}});
        QCOMPARE(c[0]->getValue(), -std::numeric_limits<float>::infinity());
    }

    void aFractionOfTheCurrentFrameCountsAsAMoveToItself() {
        LetteredCurve c({4});
        c.curve.moveKeys({{c[0], {4.5, 0}}});
        QCOMPARE(c.layout(), QString("a@4"));
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void aTargetThatIsNoNumberStillMeetsTheKeyAtFrameZero() {
        LetteredCurve c({0, 7});
        c.curve.moveKeys({{c[1], {std::nan(""), 4}}});
        QCOMPARE(c.layout(), QString("a@0 b@7"));
        QCOMPARE(c[1]->getValue(), 4.0F);
    }

    void movingNullAndForeignKeysDoesNothingToThem() {
        LetteredCurve c({1});
        LetteredCurve other({1});
        c.curve.moveKeys({{nullptr, {9, 9}}, {other[0], {9, 9}}});
        QCOMPARE(other.recorder.take(), QString());
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(other.layout(), QString("a@1"));
    }

    void valuesAreNotClampedToTheCurvesLimits() {
        VQ::Animation::MotionCurve plain;
        plain.setValueLimits({-1.0F, 1.0F});
        plain.insert(3, new VQ::Math::Interpolation::Key);
        EditableMotionCurve curve(plain);
        EditableMotionCurveKey* const key = curve.getKey(3);
        curve.moveKeys({{key, {3, 50}}});
        QCOMPARE(key->getValue(), 50.0F);
    }

    void aHundredThousandKeysMoveAtOnce() {
        EditableMotionCurve curve;
        EditableMotionCurve::KeyPosMap targets;
        for (unsigned int i = 0; i < 100000; ++i) {
            targets.insert(curve.insert(i, LetteredCurve::newKey())->second, QPointF(i + 1.0, 0.25));
        }
        curve.moveKeys(targets);
        QCOMPARE(curve.begin()->first, 1U);
        QCOMPARE(curve.getGreaterIndex(), 100000U);
    }
};

QTEST_GUILESS_MAIN(MovingKeysTest)
#include "MovingKeysTest.moc"
