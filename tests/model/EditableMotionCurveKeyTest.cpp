#include "model/EditableMotionCurveKey.h"

#include "TangentSlots.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/Snapshot.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

using namespace OneKey;

namespace {

constexpr auto noSide = static_cast<Side>(2);
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

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

    // Values and handles

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
        for (const Offset& offset : {Offset(notANumber, 0.0F), Offset(0.0F, notANumber)}) {
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

    void offsetsOfOtherTypesCannotBeSet_data() { TangentSlots::addRows(); }
    void offsetsOfOtherTypesCannotBeSet() {
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        for (const Type type : {Type::constant, Type::linear, Type::bezierAuto, static_cast<Type>(7)}) {
            Key key(slot.side == Side::left ? record(type, {-1.0F, 2.0F}, Type::bezier, {3.0F, 4.0F})
                                            : record(Type::bezier, {-1.0F, 2.0F}, type, {3.0F, 4.0F}));
            SignalRecorder recorder;
            recorder.watch(key, "key");
            const QString before = Snapshot::of(key);
            slot.setOffset(key, {5.0F, 6.0F});
            QCOMPARE(Snapshot::of(key), before);
            QCOMPARE(recorder.take(), QString());
        }
    }

    void aMovedHandleOfAFreeKeyLeavesTheOther_data() { TangentSlots::addRows(); }
    void aMovedHandleOfAFreeKeyLeavesTheOther() {
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        Key key(bezier({-1.0F, 0.0F}, {2.0F, 0.0F}));
        SignalRecorder recorder;
        recorder.watch(key, "key");
        const Offset before = key.getTangentOffset(other(slot.side));
        slot.setOffset(key, {5.0F, 6.0F});
        QCOMPARE(key.getTangentOffset(slot.side), Offset(5.0F, 6.0F));
        QCOMPARE(key.getTangentOffset(other(slot.side)), before);
        QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
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

    // Types

    void aTypeIsChangedOnItsOwnSideOnly_data() { TangentSlots::addRows(); }
    void aTypeIsChangedOnItsOwnSideOnly() {
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        for (const Type type : {Type::constant, Type::linear, Type::bezier}) {
            Key key;
            SignalRecorder recorder;
            recorder.watch(key, "key");
            slot.setType(key, type);
            QCOMPARE(key.getTangentType(slot.side), type);
            QCOMPARE(key.getTangentType(other(slot.side)), Type::bezierAuto);
            QCOMPARE(recorder.take(), QString("key.tangentsChanged()"));
            slot.setType(key, type);
            QCOMPARE(recorder.take(), QString());
        }
    }

    void aTypeChangeThatMovesAnAutomaticHandleEmitsTangentsChangedTwice_data() { TangentSlots::addRows(); }
    void aTypeChangeThatMovesAnAutomaticHandleEmitsTangentsChangedTwice() {
        const TangentSlots::Slot slot = TangentSlots::fetchRow();
        Curve curve;
        auto* const key = new Key(bezier({-5.0F, 1.0F}, {5.0F, 1.0F}));
        // Watched before the curve listens, so that the key's signal is heard before the curve's.
        SignalRecorder recorder;
        recorder.watch(*key, "key");
        curve.insert(3, key);
        recorder.watch(curve);
        QStringList states;
        connect(key, &Key::tangentsChanged, key, [&] { states.append(tangents(*key)); });
        slot.setType(*key, Type::bezierAuto);
        QCOMPARE(
            recorder.take(),
            QString(
                "key.tangentsChanged(), curve.keysChanged(), key.tangentsChanged(), curve.keysChanged()"));
        QCOMPARE(states.size(), 2);
        QCOMPARE(states.first(), tangents(*key));
        // The other handle is "bezier" and stays.
        QCOMPARE(key->getTangentOffset(other(slot.side)).second, 1.0F);
        QCOMPARE(key->getTangentOffset(slot.side).second, 0.0F);
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
};

QTEST_GUILESS_MAIN(EditableMotionCurveKeyTest)
#include "EditableMotionCurveKeyTest.moc"
