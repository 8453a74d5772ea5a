#include "OneKey.h"
#include "base/math/BezierTangents.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QTest>

using namespace OneKey;

class AutomaticHandlesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void automaticHandlesFollowFromTheNeighbours_data() {
        QTest::addColumn<unsigned int>("previous");
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<unsigned int>("next");
        QTest::addColumn<float>("dxPrevious");
        QTest::addColumn<float>("dxNext");
        const unsigned int none = 0;
        QTest::newRow("between two keys") << 2U << 7U << 19U << 5.0F << 12.0F;
        QTest::newRow("last key") << 2U << 10U << none << 8.0F << 0.0F;
        // In float the difference of the two huge frames would be 0 or 256.
        QTest::newRow("huge frames") << 4294967200U << 4294967203U << 4294967290U << 3.0F << 87.0F;
        QTest::newRow("distances past the signed range") << 1U << 4000000001U << 4000000003U << 4e9F << 2.0F;
    }
    void automaticHandlesFollowFromTheNeighbours() {
        QFETCH(unsigned int, previous);
        QFETCH(unsigned int, frame);
        QFETCH(unsigned int, next);
        QFETCH(float, dxPrevious);
        QFETCH(float, dxNext);
        Curve curve;
        Key* const key = add(
            curve, frame, record(Type::bezierAuto, {50.0F, 50.0F}, Type::bezierAuto, {50.0F, 50.0F}, 4.0F));
        add(curve, previous, Record())->setValue(1.0F);
        if (next != 0) {
            add(curve, next, Record())->setValue(6.0F);
        }
        const auto expected =
            VQ::Math::computeBezierKeyTangents(dxPrevious, dxNext, 3.0F, next != 0 ? 2.0F : 0.0F);
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        QVERIFY(key->updateBezierAutoTangents());
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
        QVERIFY(handle(*key, Side::left) == expected.first);
        QVERIFY(handle(*key, Side::right) == expected.second);
        QVERIFY(!key->updateBezierAutoTangents());
        QCOMPARE(recorder.take(), QString());
    }

    void theFirstKeyMeasuresItsLeftHandleFromFrameZero_data() {
        QTest::addColumn<unsigned int>("frame");
        QTest::addColumn<unsigned int>("next");
        QTest::newRow("first of two") << 10U << 14U;
        QTest::newRow("only key") << 10U << 0U;
        QTest::newRow("at frame 0") << 0U << 14U;
        QTest::newRow("only key, at frame 0") << 0U << 0U;
    }
    void theFirstKeyMeasuresItsLeftHandleFromFrameZero() {
        QFETCH(unsigned int, frame);
        QFETCH(unsigned int, next);
        Curve curve;
        Key* const key = add(
            curve, frame, record(Type::bezierAuto, {50.0F, 50.0F}, Type::bezierAuto, {50.0F, 50.0F}, 4.0F));
        if (next != 0) {
            add(curve, next, Record())->setValue(6.0F);
        }
        const auto expected = VQ::Math::computeBezierKeyTangents(
            static_cast<float>(frame), next != 0 ? static_cast<float>(next - frame) : 0.0F, 0.0F,
            next != 0 ? 2.0F : 0.0F);
        QVERIFY(key->updateBezierAutoTangents());
        QVERIFY(handle(*key, Side::left) == expected.first);
        QVERIFY(handle(*key, Side::right) == expected.second);
        if (frame != 0) {
            QVERIFY(key->getTangentOffset(Side::left).first != 0.0F);
        }
    }

    void aHandleNearItsFormulaStays_data() {
        QTest::addColumn<int>("side");
        QTest::addColumn<float>("distance");
        QTest::addColumn<bool>("moves");
        for (const int side : {0, 1}) {
            QTest::addRow("within the tolerance, side %d", side) << side << 0.00009F << false;
            QTest::addRow("below within the tolerance, side %d", side) << side << -0.00009F << false;
            QTest::addRow("past the tolerance, side %d", side) << side << 0.00012F << true;
        }
    }
    void aHandleNearItsFormulaStays() {
        QFETCH(int, side);
        QFETCH(float, distance);
        QFETCH(bool, moves);
        const auto [left, right] = VQ::Math::computeBezierKeyTangents(3.0F, 6.0F, 0.0F, 0.0F);
        Record stored = record(Type::bezierAuto, left, Type::bezierAuto, right);
        (side == 0 ? stored.leftTangentOffset : stored.rightTangentOffset).y += distance;
        Curve curve;
        Key* const key = add(curve, 3, stored);
        add(curve, 9, Record());
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        QCOMPARE(key->updateBezierAutoTangents(), moves);
        QCOMPARE(recorder.take(), QString(moves ? "key.tangentsChanged()" : ""));
        const Record target = moves ? record(Type::bezierAuto, left, Type::bezierAuto, right) : stored;
        QCOMPARE(Snapshot::of(*key), Snapshot::of(Key(target)));
    }

    void onlyAutomaticTangentsAreRecomputed_data() {
        QTest::addColumn<int>("type");
        QTest::newRow("constant") << 0;
        QTest::newRow("linear") << 1;
        QTest::newRow("bezier") << 2;
        QTest::newRow("no type") << 7;
    }
    void onlyAutomaticTangentsAreRecomputed() {
        QFETCH(int, type);
        const auto other = static_cast<Type>(type);
        Curve curve;
        Key* const neither = add(curve, 3, record(other, {5.0F, 5.0F}, other, {5.0F, 5.0F}));
        Key* const leftOnly = add(curve, 6, record(Type::bezierAuto, {5.0F, 5.0F}, other, {5.0F, 5.0F}));
        Key* const rightOnly = add(curve, 9, record(other, {5.0F, 5.0F}, Type::bezierAuto, {5.0F, 5.0F}));
        SignalRecorder recorder;
        recorder.watch(*neither, "neither");
        QVERIFY(!neither->updateBezierAutoTangents());
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(tangents(*neither), QString("%1 (5, 5) %1 (5, 5)").arg(type));
        QVERIFY(leftOnly->updateBezierAutoTangents());
        QCOMPARE(leftOnly->getTangentOffset(Side::right), Offset(5.0F, 5.0F));
        QVERIFY(leftOnly->getTangentOffset(Side::left) != Offset(5.0F, 5.0F));
        QVERIFY(rightOnly->updateBezierAutoTangents());
        QCOMPARE(rightOnly->getTangentOffset(Side::left), Offset(5.0F, 5.0F));
        QVERIFY(rightOnly->getTangentOffset(Side::right) != Offset(5.0F, 5.0F));
    }

    void aKeyInNoCurveRecomputesNothing() {
        Key key(record(Type::bezierAuto, {5.0F, 5.0F}, Type::bezierAuto, {5.0F, 5.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        QVERIFY(!key.updateBezierAutoTangents());
        key.setLeftTangentType(Type::linear);
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
        QCOMPARE(tangents(key), QString("1 (5, 5) 3 (5, 5)"));
    }
};

QTEST_GUILESS_MAIN(AutomaticHandlesTest)
#include "AutomaticHandlesTest.moc"
