#include "TangentSlots.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QTest>

#include <rapidcheck.h>

#include <cmath>

using namespace OneKey;

namespace {

bool near(Offset a, double x, double y) {
    return std::abs(static_cast<double>(a.first) - x) < 1e-5 &&
           std::abs(static_cast<double>(a.second) - y) < 1e-5;
}

} // namespace

class KeyConstraintsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void makingTheSecondTangentBezierAlignsTheHandles_data() {
        QTest::addColumn<int>("side");
        QTest::addColumn<bool>("named");
        QTest::addColumn<bool>("smooth");
        QTest::addColumn<bool>("symmetrical");
        QTest::addColumn<QString>("aligned");
        const QString mirrored = "2 (-2, -2) 2 (2, 2)";
        for (const bool named : {false, true}) {
            for (const int side : {0, 1}) {
                const auto name = [&](const char* text) {
                    return QString("%1, side %2%3").arg(text).arg(side).arg(named ? " named" : "").toUtf8();
                };
                QTest::newRow(name("free")) << side << named << false << false << "2 (-1, 0) 2 (3, 4)";
                QTest::newRow(name("symmetrical")) << side << named << false << true << mirrored;
                QTest::newRow(name("both: symmetrical wins")) << side << named << true << true << mirrored;
            }
        }
    }
    void makingTheSecondTangentBezierAlignsTheHandles() {
        QFETCH(bool, smooth);
        QFETCH(bool, symmetrical);
        QFETCH(QString, aligned);
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        // Flags first, on a key whose handles already obey them; then the handle of one side alone is moved.
        Key key(bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        key.setSmooth(smooth);
        key.setSymmetrical(symmetrical);
        key.setTangentType(Side::left, Type::linear);
        key.setRightTangentOffset({3.0F, 4.0F});
        QCOMPARE(tangents(key), QString("1 (-1, 0) 2 (3, 4)"));
        if (slot.side == Side::right) {
            key.setTangentType(Side::right, Type::constant);
            key.setTangentType(Side::left, Type::bezier);
        }
        SignalRecorder recorder;
        recorder.watch(key, "key");
        slot.setType(key, Type::bezier);
        QCOMPARE(tangents(key), aligned);
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
    }

    void smoothHandlesTakeTheMeanOfTheirDirections() {
        // Directions 0 and a quarter turn: the mean is an eighth.
        Key key(bezier({-2.0F, 0.0F}, {0.0F, 3.0F}));
        key.setSmooth(true);
        const double half = std::sqrt(0.5);
        QVERIFY(near(key.getTangentOffset(Side::left), -2.0 * half, -2.0 * half));
        QVERIFY(near(key.getTangentOffset(Side::right), 3.0 * half, 3.0 * half));
    }

    void handlesThatStraddleAHalfTurnAverageToTheOppositeDirection() {
        // Both point backwards, one slightly above and one slightly below: the mean points forwards.
        Key key(bezier({1.0F, 0.1F}, {-2.0F, 0.2F}));
        key.setSmooth(true);
        QVERIFY(near(key.getTangentOffset(Side::left), -std::sqrt(1.01), 0.0));
        QVERIFY(near(key.getTangentOffset(Side::right), std::sqrt(4.04), 0.0));
    }

    void aTurnedHandleOfASmoothKeyTurnsTheOtherAndKeepsItsLength_data() { TangentSlots::addRows(); }
    void aTurnedHandleOfASmoothKeyTurnsTheOtherAndKeepsItsLength() {
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        const bool isLeft = slot.side == Side::left;
        Key key(isLeft ? bezier({-1.0F, 0.0F}, {2.0F, 0.0F}) : bezier({-2.0F, 0.0F}, {1.0F, 0.0F}));
        key.setSmooth(true);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const float sign = isLeft ? -1.0F : 1.0F;
        slot.setOffset(key, {sign, sign});
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
        QCOMPARE(key.getTangentOffset(slot.side), Offset(sign, sign));
        const double expected = -static_cast<double>(sign) * std::sqrt(2.0);
        QVERIFY(near(key.getTangentOffset(other(slot.side)), expected, expected));
        slot.setOffset(key, {sign, sign});
        QCOMPARE(recorder.take(), QString());
    }

    void aMovedHandleOfASymmetricalKeyIsMirrored_data() { TangentSlots::addRows(); }
    void aMovedHandleOfASymmetricalKeyIsMirrored() {
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        for (const bool smooth : {false, true}) {
            Key key(bezier({-1.0F, 0.5F}, {1.0F, -0.5F}));
            key.setSmooth(smooth);
            key.setSymmetrical(true);
            SignalRecorder recorder;
            recorder.watch(key, "key");
            slot.setOffset(key, {3.0F, 1.0F});
            QCOMPARE(key.getTangentOffset(slot.side), Offset(3.0F, 1.0F));
            QCOMPARE(key.getTangentOffset(other(slot.side)), Offset(-3.0F, -1.0F));
            QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
        }
    }

    void constraintsWaitWhileTheOppositeTangentIsNotBezier_data() { TangentSlots::addRows(); }
    void constraintsWaitWhileTheOppositeTangentIsNotBezier() {
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        for (const Type type : {Type::constant, Type::linear, Type::bezierAuto}) {
            for (const bool symmetrical : {false, true}) {
                Key key(bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
                key.setSmooth(true);
                key.setSymmetrical(symmetrical);
                key.setTangentType(other(slot.side), type);
                const Offset before = key.getTangentOffset(other(slot.side));
                SignalRecorder recorder;
                recorder.watch(key, "key");
                slot.setOffset(key, {3.0F, 4.0F});
                QCOMPARE(key.getTangentOffset(slot.side), Offset(3.0F, 4.0F));
                QCOMPARE(key.getTangentOffset(other(slot.side)), before);
                QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
                QVERIFY(key.isSmooth());
                QCOMPARE(key.isSymmetrical(), symmetrical);
            }
        }
    }

    void constraintsHoldAfterAnyMoveOfAHandle() {
        const bool holds =
            rc::check("a symmetrical key's handles are opposites, a smooth key's point apart", [] {
                const auto coordinate = rc::gen::map(rc::gen::inRange(-10000, 10001), [](int number) {
                    return static_cast<float>(number) / 16.0F;
                });
                Key key(bezier({*coordinate, *coordinate}, {*coordinate, *coordinate}));
                const bool symmetrical = *rc::gen::arbitrary<bool>();
                symmetrical ? key.setSymmetrical(true) : key.setSmooth(true);
                const Side side = *rc::gen::element(Side::left, Side::right);
                const float length = handle(key, other(side)).norm();
                const Offset offset(*coordinate, *coordinate);
                RC_PRE(offset != key.getTangentOffset(side));
                RC_PRE(offset != Offset(0.0F, 0.0F));
                key.setTangentOffset(side, offset);
                const Position2D own = handle(key, side);
                const Position2D opposite = handle(key, other(side));
                RC_ASSERT(own == Position2D(offset.first, offset.second));
                if (symmetrical) {
                    RC_ASSERT(opposite == Position2D(-own.x, -own.y));
                    return;
                }
                const float tolerance = 1e-5F * length * own.norm() + 1e-6F;
                RC_ASSERT(std::abs(opposite.norm() - length) <= 1e-5F * length);
                RC_ASSERT(std::abs(own.x * opposite.y - own.y * opposite.x) <= tolerance);
                RC_ASSERT(own.x * opposite.x + own.y * opposite.y <= tolerance);
            });
        QVERIFY(holds);
    }

    void aFlagThatForcesTheTypesEmitsOnlyItsOwnSignal_data() {
        QTest::addColumn<int>("leftType");
        QTest::addColumn<int>("rightType");
        for (int leftType = 0; leftType < 4; ++leftType) {
            for (int rightType = 0; rightType < 4; ++rightType) {
                QTest::addRow("types %d and %d", leftType, rightType) << leftType << rightType;
            }
        }
    }
    void aFlagThatForcesTheTypesEmitsOnlyItsOwnSignal() {
        QFETCH(int, leftType);
        QFETCH(int, rightType);
        const Record source =
            record(static_cast<Type>(leftType), {-1.0F, 0.0F}, static_cast<Type>(rightType), {3.0F, 2.0F});
        Curve curve;
        Key* const symmetrical = add(curve, 3, source);
        Key* const smooth = add(curve, 9, source);
        SignalRecorder recorder;
        recorder.watch(*symmetrical, "symmetrical");
        recorder.watch(*smooth, "smooth");
        recorder.watch(curve);
        QString heard;
        connect(symmetrical, &Key::symmetricalChanged, this, [&] { heard = tangents(*symmetrical); });
        symmetrical->setSymmetrical(true);
        QCOMPARE(recorder.take(), QString("symmetrical.symmetricalChanged(true)"));
        QCOMPARE(tangents(*symmetrical), QString("2 (-2, -1) 2 (2, 1)"));
        QCOMPARE(heard, tangents(*symmetrical));

        connect(smooth, &Key::smoothChanged, this, [&] { heard = tangents(*smooth); });
        smooth->setSmooth(true);
        QCOMPARE(recorder.take(), QString("smooth.smoothChanged(true)"));
        QCOMPARE(smooth->getTangentType(Side::left), Type::bezier);
        QCOMPARE(smooth->getTangentType(Side::right), Type::bezier);
        const double mean = std::atan2(2.0, 3.0) / 2.0;
        QVERIFY(near(smooth->getTangentOffset(Side::left), -std::cos(mean), -std::sin(mean)));
        QVERIFY(near(smooth->getTangentOffset(Side::right), std::cos(mean) * std::sqrt(13.0),
                     std::sin(mean) * std::sqrt(13.0)));
        QCOMPARE(heard, tangents(*smooth));
    }

    void aFlagThatIsSetAlreadyForcesNothing() {
        Key key(bezier({-1.0F, 0.0F}, {3.0F, 2.0F}));
        key.setSmooth(true);
        key.setSymmetrical(true);
        key.setLeftTangentType(Type::linear);
        key.setRightTangentType(Type::constant);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const QString before = Snapshot::of(key);
        key.setSmooth(true);
        key.setSymmetrical(true);
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(Snapshot::of(key), before);
    }

    void switchingAFlagOffChangesNothingElse() {
        Key key(bezier({-1.0F, 0.0F}, {3.0F, 2.0F}));
        key.setSmooth(true);
        key.setSymmetrical(true);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const QString before = tangents(key);
        key.setSymmetrical(false);
        key.setSmooth(false);
        QCOMPARE(recorder.take(), QString("key.symmetricalChanged(false), key.smoothChanged(false)"));
        QVERIFY(!key.isSmooth() && !key.isSymmetrical());
        QCOMPARE(tangents(key), before);
        key.setLeftTangentType(Type::linear);
        recorder.take();
        key.setSmooth(false);
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(key.getTangentType(Side::left), Type::linear);
    }

    void makingASymmetricalKeySmoothMirrorsItsHandles() {
        Key key(bezier({-2.0F, -1.0F}, {2.0F, 1.0F}));
        key.setSymmetrical(true);
        key.setLeftTangentType(Type::linear);
        key.setRightTangentOffset({4.0F, 4.0F});
        SignalRecorder recorder;
        recorder.watch(key, "key");
        key.setSmooth(true);
        QCOMPARE(tangents(key), QString("2 (-3, -2.5) 2 (3, 2.5)"));
        QCOMPARE(recorder.take(), QString("key.smoothChanged(true)"));
    }
};

QTEST_GUILESS_MAIN(KeyConstraintsTest)
#include "KeyConstraintsTest.moc"
