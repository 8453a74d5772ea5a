#include "model/EditableMotionCurveKey.h"
#include "base/math/BezierTangents.h"
#include "model/EditableMotionCurve.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QTest>

#include <rapidcheck.h>

#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>

namespace {

using Curve = ZT::EditableMotionCurve;
using Key = ZT::EditableMotionCurveKey;
using Offset = QPair<float, float>;
using Record = VQ::Math::Interpolation::Key;
using Side = ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;
using VQ::Math::Position2D;

constexpr auto noSide = static_cast<Side>(2);
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

Record record(Type leftType, Position2D leftOffset, Type rightType, Position2D rightOffset,
              float value = 0.0F) {
    Record key;
    key.value = value;
    key.leftTangentType = leftType;
    key.leftTangentOffset = leftOffset;
    key.rightTangentType = rightType;
    key.rightTangentOffset = rightOffset;
    return key;
}

Record bezier(Position2D leftOffset, Position2D rightOffset) {
    return record(Type::bezier, leftOffset, Type::bezier, rightOffset);
}

/// Both tangents as text: "2 (-1, 0) 2 (2, 0)".
QString tangents(const Key& key) {
    QStringList texts;
    for (const Side side : {Side::left, Side::right}) {
        const Offset offset = key.getTangentOffset(side);
        texts.append(QString("%1 (%2, %3)")
                         .arg(static_cast<int>(key.getTangentType(side)))
                         .arg(static_cast<double>(offset.first))
                         .arg(static_cast<double>(offset.second)));
    }
    return texts.join(' ');
}

/// The same operation by the slot of one side and by the slot that names the side.
void setType(Key& key, Side side, Type type, bool named) {
    if (named) {
        key.setTangentType(side, type);
    } else if (side == Side::left) {
        key.setLeftTangentType(type);
    } else {
        key.setRightTangentType(type);
    }
}

void setOffset(Key& key, Side side, Offset offset, bool named) {
    if (named) {
        key.setTangentOffset(side, offset);
    } else if (side == Side::left) {
        key.setLeftTangentOffset(offset);
    } else {
        key.setRightTangentOffset(offset);
    }
}

Side other(Side side) {
    return side == Side::left ? Side::right : Side::left;
}

Position2D point(Offset offset) {
    return {offset.first, offset.second};
}

bool near(Offset a, double x, double y) {
    return std::abs(static_cast<double>(a.first) - x) < 1e-5 &&
           std::abs(static_cast<double>(a.second) - y) < 1e-5;
}

Key* add(Curve& curve, unsigned int frame, const Record& key) {
    return curve.insert(frame, new Key(key))->second;
}

void slotsOfBothSides() {
    QTest::addColumn<int>("side");
    QTest::addColumn<bool>("named");
    QTest::newRow("left slot") << 0 << false;
    QTest::newRow("right slot") << 1 << false;
    QTest::newRow("left by side") << 0 << true;
    QTest::newRow("right by side") << 1 << true;
}

struct Row {
    Side side;
    bool named;
};

Row fetchRow() {
    QFETCH(int, side);
    QFETCH(bool, named);
    return {static_cast<Side>(side), named};
}

} // namespace

class EditableMotionCurveKeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Construction and access

    void aNewKeyIsAutomaticAndStandsInNoCurve() {
        const Key key;
        QCOMPARE(key.getValue(), 0.0F);
        QCOMPARE(tangents(key), QString("3 (0, 0) 3 (0, 0)"));
        QVERIFY(!key.isSmooth());
        QVERIFY(!key.isSymmetrical());
        QCOMPARE(key.getParentCurve(), nullptr);
        QCOMPARE(key.parent(), nullptr);
    }

    void aKeyMadeFromARecordCopiesIt() {
        static_assert(std::is_convertible_v<const Record&, Key>,
                      "a record stands wherever a key can be built");
        const Record source = record(Type::bezierAuto, {-7.0F, 8.0F}, Type::linear, {9.0F, -1.0F}, 2.5F);
        const Key key(source);
        QCOMPARE(tangents(key), QString("3 (-7, 8) 1 (9, -1)"));
        QCOMPARE(key.getValue(), 2.5F);
        QVERIFY(!key.isSmooth() && !key.isSymmetrical());
        QCOMPARE(key.getParentCurve(), nullptr);
    }

    void theBaseRecordIsACopy() {
        Key key(record(Type::constant, {-1.0F, 2.0F}, Type::bezier, {3.0F, 4.0F}, 5.0F));
        Record copy = key.baseMotionCurveKey();
        QCOMPARE(Snapshot::of(Key(copy)), Snapshot::of(key));
        copy.value = 6.0F;
        QCOMPARE(key.getValue(), 5.0F);
    }

    void aValueThatIsNoSideReadsNeutral() {
        const Key key(bezier({-1.0F, 2.0F}, {3.0F, 4.0F}));
        for (const int value : {2, -1}) {
            QCOMPARE(static_cast<int>(key.getTangentType(static_cast<Side>(value))), 3);
            QCOMPARE(key.getTangentOffset(static_cast<Side>(value)), Offset(0.0F, 0.0F));
        }
    }

    void storingTheParentDoesNothingElse() {
        Curve curve;
        Key key(record(Type::bezierAuto, {-7.0F, 8.0F}, Type::bezierAuto, {9.0F, -1.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        recorder.watch(curve);
        key._setParentCurve(&curve);
        key.setValue(1.0F);
        QCOMPARE(key.getParentCurve(), &curve);
        QVERIFY(curve.empty());
        QCOMPARE(recorder.take(), QString("key.valueChanged(1)"));
        QCOMPARE(tangents(key), QString("3 (-7, 8) 3 (9, -1)"));
        key._setParentCurve(nullptr);
        QCOMPARE(key.getParentCurve(), nullptr);
    }

    void aCloneHasTheSameStateButNoCurve_data() {
        QTest::addColumn<bool>("smooth");
        QTest::addColumn<bool>("symmetrical");
        QTest::newRow("free") << false << false;
        QTest::newRow("smooth") << true << false;
        QTest::newRow("symmetrical") << false << true;
        QTest::newRow("both") << true << true;
    }
    void aCloneHasTheSameStateButNoCurve() {
        QFETCH(bool, smooth);
        QFETCH(bool, symmetrical);
        Curve curve;
        Key* const key =
            add(curve, 4, record(Type::bezier, {-1.0F, -3.0F}, Type::bezier, {2.0F, 0.5F}, 7.0F));
        key->setSmooth(smooth);
        key->setSymmetrical(symmetrical);
        key->setRightTangentType(Type::linear);
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        recorder.watch(curve);
        const std::unique_ptr<Key> clone(key->clone());
        QVERIFY(clone.get() != key);
        QCOMPARE(Snapshot::of(*clone), Snapshot::of(*key));
        QCOMPARE(clone->getParentCurve(), nullptr);
        QCOMPARE(key->getParentCurve(), &curve);
        clone->setValue(8.0F);
        QCOMPARE(key->getValue(), 7.0F);
        QCOMPARE(recorder.take(), QString());
    }

    void elementsOfAMapTurnIntoEditableKeys() {
        Curve curve;
        Key key;
        Record* const stored = key._record();
        const auto element = Key::_toEditable(std::pair<const unsigned int, Record*>(7U, stored));
        static_assert(std::is_same_v<decltype(element.second), Key*>);
        QCOMPARE(element.first, 7U);
        QCOMPARE(element.second, &key);
        const auto constant = Key::_toEditable(std::pair<const unsigned int, const Record*>(8U, stored));
        static_assert(std::is_same_v<decltype(constant.second), const Key*>);
        QCOMPARE(constant.first, 8U);
        QCOMPARE(constant.second, &key);
        QCOMPARE(Key::_toEditable(std::pair<unsigned int, Record*>(1U, nullptr)).second, nullptr);
        QCOMPARE(Key::_toEditable(std::pair<unsigned int, const Record*>(1U, nullptr)).second, nullptr);
    }

    void theIndexIsTheFrameInTheCurveAndOtherwiseZero() {
        Curve curve;
        Key* const held = add(curve, 12, Record());
        Key detached;
        QCOMPARE(ZT::index(held), 12U);
        QCOMPARE(ZT::index(&detached), 0U);
        QCOMPARE(ZT::index(nullptr), 0U);
        // A curve that does not know the key: its exception ends in the free function.
        detached._setParentCurve(&curve);
        QCOMPARE(ZT::index(&detached), 0U);
        detached._setParentCurve(nullptr);
        const std::unique_ptr<Key> released(curve.release(12));
        QCOMPARE(ZT::index(released.get()), 0U);
    }

    // Value

    void aNewValueIsAnnouncedAndTheSameOneIsNot() {
        Key key(record(Type::bezierAuto, {-7.0F, 8.0F}, Type::bezierAuto, {9.0F, -1.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        key.setValue(2.5F);
        QCOMPARE(recorder.take(), QString("key.valueChanged(2.5)"));
        key.setValue(2.5F);
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(key.getValue(), 2.5F);
        QCOMPARE(tangents(key), QString("3 (-7, 8) 3 (9, -1)"));
    }

    void aNewValueRecomputesNoHandle() {
        Curve curve;
        Key* const key =
            add(curve, 3, record(Type::bezierAuto, {-7.0F, 8.0F}, Type::bezierAuto, {9.0F, -1.0F}));
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        key->setValue(1.0F);
        QCOMPARE(recorder.take(), QString("key.valueChanged(1)"));
        QCOMPARE(tangents(*key), QString("3 (-7, 8) 3 (9, -1)"));
    }

    void aValueThatIsNotANumberAlwaysCountsAsAChange() {
        Key key(bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        key.setValue(notANumber);
        key.setValue(notANumber);
        QCOMPARE(recorder.take(), QString("key.valueChanged(nan), key.valueChanged(nan)"));
        QVERIFY(std::isnan(key.getValue()));
        for (const Offset offset : {Offset(notANumber, 0.0F), Offset(0.0F, notANumber)}) {
            key.setLeftTangentOffset(offset);
            key.setLeftTangentOffset(offset);
            key.setTangentOffset(Side::right, offset);
            key.setTangentOffset(Side::right, offset);
            QCOMPARE(recorder.count("key.tangentsChanged()"), 4);
            recorder.take();
        }
    }

    void aZeroOfTheOtherSignIsNoChange() {
        Key key(bezier({0.0F, 0.0F}, {0.0F, 0.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const QString before = Snapshot::of(key);
        key.setValue(-0.0F);
        key.setLeftTangentOffset({-0.0F, -0.0F});
        key.setRightTangentOffset({-0.0F, 0.0F});
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(Snapshot::of(key), before);
    }

    void unusualHandlesAreStoredAsGiven() {
        Key key(bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        key.setLeftTangentOffset({5.0F, std::numeric_limits<float>::infinity()});
        key.setRightTangentOffset({-5.0F, 1.0F});
        QCOMPARE(tangents(key), QString("2 (5, inf) 2 (-5, 1)"));
    }

    // Types

    void aTypeIsChangedOnItsOwnSideOnly_data() { slotsOfBothSides(); }
    void aTypeIsChangedOnItsOwnSideOnly() {
        const Row row = fetchRow();
        for (const Type type : {Type::constant, Type::linear, Type::bezier}) {
            Key key;
            SignalRecorder recorder;
            recorder.watch(key, "key");
            setType(key, row.side, type, row.named);
            QCOMPARE(key.getTangentType(row.side), type);
            QCOMPARE(key.getTangentType(other(row.side)), Type::bezierAuto);
            QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
            setType(key, row.side, type, row.named);
            QCOMPARE(recorder.take(), QString());
        }
    }

    void aValueThatIsNoSideChangesNothing() {
        Key key(bezier({-1.0F, 2.0F}, {3.0F, 4.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        key.setTangentType(noSide, Type::linear);
        key.setTangentOffset(noSide, {5.0F, 5.0F});
        QCOMPARE(recorder.take(), QString());
        QCOMPARE(tangents(key), QString("2 (-1, 2) 2 (3, 4)"));
    }

    void aTypeChangeThatMovesAnAutomaticHandleEmitsTangentsChangedTwice_data() { slotsOfBothSides(); }
    void aTypeChangeThatMovesAnAutomaticHandleEmitsTangentsChangedTwice() {
        const Row row = fetchRow();
        Curve curve;
        auto* const key = new Key(bezier({-5.0F, 1.0F}, {5.0F, 1.0F}));
        // Watched before the curve listens, so that the key's signal is heard before the curve's.
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        curve.insert(3, key);
        recorder.watch(curve);
        QStringList states;
        connect(key, &Key::tangentsChanged, key, [&] { states.append(tangents(*key)); });
        setType(*key, row.side, Type::bezierAuto, row.named);
        QCOMPARE(
            recorder.take(),
            QString(
                "key.tangentsChanged(), curve.keysChanged(), key.tangentsChanged(), curve.keysChanged()"));
        QCOMPARE(states.size(), 2);
        QCOMPARE(states.first(), tangents(*key));
        // The other handle is "bezier" and stays.
        QCOMPARE(key->getTangentOffset(other(row.side)).second, 1.0F);
        QCOMPARE(key->getTangentOffset(row.side).second, 0.0F);
    }

    void aTypeChangeThatLeavesAutomaticHandlesInPlaceEmitsOnce() {
        Curve curve;
        Key* const key = add(curve, 3, Record());
        key->updateBezierAutoTangents();
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        key->setLeftTangentType(Type::constant);
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
    }

    // Constraints

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
        const Row row = fetchRow();
        // Flags first, on a key whose handles already obey them; then the handle of one side alone is moved.
        Key key(bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
        key.setSmooth(smooth);
        key.setSymmetrical(symmetrical);
        key.setTangentType(Side::left, Type::linear);
        key.setRightTangentOffset({3.0F, 4.0F});
        QCOMPARE(tangents(key), QString("1 (-1, 0) 2 (3, 4)"));
        if (row.side == Side::right) {
            key.setTangentType(Side::right, Type::constant);
            key.setTangentType(Side::left, Type::bezier);
        }
        SignalRecorder recorder;
        recorder.watch(key, "key");
        setType(key, row.side, Type::bezier, row.named);
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

    void aTurnedHandleOfASmoothKeyTurnsTheOtherAndKeepsItsLength_data() { slotsOfBothSides(); }
    void aTurnedHandleOfASmoothKeyTurnsTheOtherAndKeepsItsLength() {
        const Row row = fetchRow();
        const bool isLeft = row.side == Side::left;
        Key key(isLeft ? bezier({-1.0F, 0.0F}, {2.0F, 0.0F}) : bezier({-2.0F, 0.0F}, {1.0F, 0.0F}));
        key.setSmooth(true);
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const float sign = isLeft ? -1.0F : 1.0F;
        setOffset(key, row.side, {sign, sign}, row.named);
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
        QCOMPARE(key.getTangentOffset(row.side), Offset(sign, sign));
        const double expected = -static_cast<double>(sign) * std::sqrt(2.0);
        QVERIFY(near(key.getTangentOffset(other(row.side)), expected, expected));
        setOffset(key, row.side, {sign, sign}, row.named);
        QCOMPARE(recorder.take(), QString());
    }

    void aMovedHandleOfASymmetricalKeyIsMirrored_data() { slotsOfBothSides(); }
    void aMovedHandleOfASymmetricalKeyIsMirrored() {
        const Row row = fetchRow();
        for (const bool smooth : {false, true}) {
            Key key(bezier({-1.0F, 0.5F}, {1.0F, -0.5F}));
            key.setSmooth(smooth);
            key.setSymmetrical(true);
            SignalRecorder recorder;
            recorder.watch(key, "key");
            setOffset(key, row.side, {3.0F, 1.0F}, row.named);
            QCOMPARE(key.getTangentOffset(row.side), Offset(3.0F, 1.0F));
            QCOMPARE(key.getTangentOffset(other(row.side)), Offset(-3.0F, -1.0F));
            QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
        }
    }

    void aMovedHandleOfAFreeKeyLeavesTheOther_data() { slotsOfBothSides(); }
    void aMovedHandleOfAFreeKeyLeavesTheOther() {
        const Row row = fetchRow();
        Key key(bezier({-1.0F, 0.0F}, {2.0F, 0.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const Offset before = key.getTangentOffset(other(row.side));
        setOffset(key, row.side, {5.0F, 6.0F}, row.named);
        QCOMPARE(key.getTangentOffset(row.side), Offset(5.0F, 6.0F));
        QCOMPARE(key.getTangentOffset(other(row.side)), before);
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
    }

    void constraintsWaitWhileTheOppositeTangentIsNotBezier_data() { slotsOfBothSides(); }
    void constraintsWaitWhileTheOppositeTangentIsNotBezier() {
        const Row row = fetchRow();
        for (const Type type : {Type::constant, Type::linear, Type::bezierAuto}) {
            for (const bool symmetrical : {false, true}) {
                Key key(bezier({-1.0F, 0.0F}, {1.0F, 0.0F}));
                key.setSmooth(true);
                key.setSymmetrical(symmetrical);
                key.setTangentType(other(row.side), type);
                const Offset before = key.getTangentOffset(other(row.side));
                SignalRecorder recorder;
                recorder.watch(key, "key");
                setOffset(key, row.side, {3.0F, 4.0F}, row.named);
                QCOMPARE(key.getTangentOffset(row.side), Offset(3.0F, 4.0F));
                QCOMPARE(key.getTangentOffset(other(row.side)), before);
                QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
                QVERIFY(key.isSmooth());
                QCOMPARE(key.isSymmetrical(), symmetrical);
            }
        }
    }

    void offsetsOfOtherTypesCannotBeSet_data() { slotsOfBothSides(); }
    void offsetsOfOtherTypesCannotBeSet() {
        const Row row = fetchRow();
        for (const Type type : {Type::constant, Type::linear, Type::bezierAuto, static_cast<Type>(7)}) {
            Key key(row.side == Side::left ? record(type, {-1.0F, 2.0F}, Type::bezier, {3.0F, 4.0F})
                                           : record(Type::bezier, {-1.0F, 2.0F}, type, {3.0F, 4.0F}));
            SignalRecorder recorder;
            recorder.watch(key, "key");
            const QString before = Snapshot::of(key);
            setOffset(key, row.side, {5.0F, 6.0F}, row.named);
            QCOMPARE(Snapshot::of(key), before);
            QCOMPARE(recorder.take(), QString());
        }
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
                const float length = point(key.getTangentOffset(other(side))).norm();
                const Offset offset(*coordinate, *coordinate);
                RC_PRE(offset != key.getTangentOffset(side));
                RC_PRE(offset != Offset(0.0F, 0.0F));
                key.setTangentOffset(side, offset);
                const Position2D own = point(key.getTangentOffset(side));
                const Position2D opposite = point(key.getTangentOffset(other(side)));
                RC_ASSERT(own == point(offset));
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

    // Automatic handles

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
        QVERIFY(point(key->getTangentOffset(Side::left)) == expected.first);
        QVERIFY(point(key->getTangentOffset(Side::right)) == expected.second);
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
        QVERIFY(point(key->getTangentOffset(Side::left)) == expected.first);
        QVERIFY(point(key->getTangentOffset(Side::right)) == expected.second);
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

QTEST_GUILESS_MAIN(EditableMotionCurveKeyTest)

#include "EditableMotionCurveKeyTest.moc"
