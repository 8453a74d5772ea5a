#include "LetteredCurve.h"
#include "tests/support/Snapshot.h"

#include <QtTest>

#include <functional>
#include <vector>

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;
using ZT::TangentSide;
using Type = VQ::Math::Interpolation::InterpolationType;

namespace {

/// Three "bezier" keys with handles (-1, -2) and (3, 1).
struct Curve : LetteredCurve {
    Curve()
        : LetteredCurve({0, 10, 20},
                        Records::makeKey(0.0F, Type::bezier, {-1.0F, -2.0F}, Type::bezier, {3.0F, 1.0F})) {}

    EditableMotionCurve::KeysSet all() const { return {keys[0], keys[1], keys[2]}; }
};

using Edit = std::function<void(EditableMotionCurve&, EditableMotionCurveKey*)>;

/// Each bulk edit applied to one key, or to nothing when the key is null.
const std::vector<std::pair<const char*, Edit>>& bulkEdits() {
    using C = EditableMotionCurve;
    static const std::vector<std::pair<const char*, Edit>> edits{
        {"moveTangents, one offset",
         [](C& c, auto* k) {
             c.moveTangents(k ? C::KeysSet{k} : C::KeysSet(), TangentSide::left, {-5.0F, 5.0F});
         }},
        {"moveTangents, own offsets",
         [](C& c, auto* k) {
             c.moveTangents(k ? C::TangentPosMap{{k, {5.0F, 5.0F}}} : C::TangentPosMap(), TangentSide::right);
         }},
        {"setTangentsType, one type",
         [](C& c, auto* k) {
             c.setTangentsType(k ? C::KeySideMap{{k, TangentSide::left}} : C::KeySideMap(), Type::linear);
         }},
        {"setTangentsType, own types",
         [](C& c, auto* k) {
             c.setTangentsType(k ? C::TangentTypeMap{{k, {TangentSide::right, Type::constant}}}
                                 : C::TangentTypeMap());
         }},
        {"setKeysSmooth, one state",
         [](C& c, auto* k) { c.setKeysSmooth(k ? C::KeysSet{k} : C::KeysSet(), true); }},
        {"setKeysSmooth, own states",
         [](C& c, auto* k) {
             c.setKeysSmooth(k ? C::KeyStateMap{{k, true}} : C::KeyStateMap());
         }},
        {"setKeysSymmetrical, one state",
         [](C& c, auto* k) { c.setKeysSymmetrical(k ? C::KeysSet{k} : C::KeysSet(), true); }},
        {"setKeysSymmetrical, own states",
         [](C& c, auto* k) {
             c.setKeysSymmetrical(k ? C::KeyStateMap{{k, true}} : C::KeyStateMap());
         }},
        {"setKeysParam",
         [](C& c, auto* k) { c.setKeysParam(k ? C::KeysSet{k} : C::KeysSet(), Type::linear, false, false); }},
    };
    return edits;
}

void editRows() {
    QTest::addColumn<int>("edit");
    for (std::size_t i = 0; i < bulkEdits().size(); ++i) {
        QTest::newRow(bulkEdits()[i].first) << static_cast<int>(i);
    }
}

const Edit& fetchedEdit() {
    QFETCH(int, edit);
    return bulkEdits()[static_cast<std::size_t>(edit)].second;
}

} // namespace

class EditableMotionCurveParametersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBulkEditChangesItsKeyAndEndsWithOneSignal_data() { editRows(); }
    void aBulkEditChangesItsKeyAndEndsWithOneSignal() {
        Curve c;
        const QString before = Snapshot::of(*c[1]);
        fetchedEdit()(c.curve, c[1]);
        QVERIFY(Snapshot::of(*c[1]) != before);
        QCOMPARE(c.recorder.count("curve.keysChanged()"), 1);
        QVERIFY(c.recorder.take().endsWith("curve.keysChanged()"));
    }

    void aBulkEditOfNothingLeavesTheBatchDepthRaised_data() { editRows(); }
    void aBulkEditOfNothingLeavesTheBatchDepthRaised() {
        Curve c;
        fetchedEdit()(c.curve, nullptr);
        QCOMPARE(c.recorder.take(), QString());
        c.curve.setKeysSmooth(c.all(), true);
        QCOMPARE(c.recorder.count("curve.keysChanged()"), 0);
    }

    void aKeyOfAnotherCurveIsLeftUnchanged_data() { editRows(); }
    void aKeyOfAnotherCurveIsLeftUnchanged() {
        Curve c;
        Curve other;
        const QString before = Snapshot::of(other.curve);
        fetchedEdit()(c.curve, other[0]);
        QCOMPARE(Snapshot::of(other.curve), before);
        QCOMPARE(other.recorder.take(), QString());
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void aNullKeyIsSkipped() {
        Curve c;
        c.curve.setKeysSmooth(EditableMotionCurve::KeysSet{nullptr}, true);
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void threeKeysMadeSmoothAreAnnouncedOnce() {
        Curve c;
        c.curve.setKeysSmooth(c.all(), true);
        QVERIFY(c[0]->isSmooth() && c[1]->isSmooth() && c[2]->isSmooth());
        QCOMPARE(c.recorder.count("curve.keysChanged()"), 1);
        QCOMPARE(c.recorder.count("a.smoothChanged(true)"), 1);
    }

    void bothSidesOfAKeyCanBeNamed() {
        Curve c;
        c.curve.setTangentsType({{c[0], TangentSide::left}, {c[0], TangentSide::right}}, Type::linear);
        QCOMPARE(c[0]->getTangentType(TangentSide::left), Type::linear);
        QCOMPARE(c[0]->getTangentType(TangentSide::right), Type::linear);
    }

    void aMapWithTwoEntriesForAKeyAppliesBoth() {
        Curve c;
        QMultiMap<EditableMotionCurveKey*, QPair<TangentSide, Type>> types;
        types.insert(c[0], {TangentSide::left, Type::linear});
        types.insert(c[0], {TangentSide::right, Type::constant});
        c.curve.setTangentsType(types);
        QCOMPARE(c[0]->getTangentType(TangentSide::left), Type::linear);
        QCOMPARE(c[0]->getTangentType(TangentSide::right), Type::constant);
    }

    // With the flags first, making the key smooth would force the types back to "bezier".
    void typesAreSetBeforeTheFlags() {
        Curve c;
        c.curve.setKeysParam({c[0]}, Type::linear, true, true);
        QCOMPARE(c[0]->getTangentType(TangentSide::left), Type::bezier);
        QCOMPARE(c.recorder.take(),
                 QString("a.tangentsChanged(), a.tangentsChanged(), a.smoothChanged(true), "
                         "a.symmetricalChanged(true), curve.keysChanged()"));
    }

    void restoringGoesFromFlagsOverTypesToHandles() {
        Curve c;
        QMultiMap<EditableMotionCurveKey*, QPair<TangentSide, Type>> types;
        types.insert(c[0], {TangentSide::left, Type::linear});
        types.insert(c[0], {TangentSide::right, Type::bezier});
        c.curve.restoreKeys(types, {{c[0], {-9.0F, 0.0F}}}, {{c[0], {7.0F, 7.0F}}}, {{c[0], true}},
                            {{c[0], true}});
        QCOMPARE(c.recorder.take(),
                 QString("a.smoothChanged(true), a.symmetricalChanged(true), a.tangentsChanged(), "
                         "a.tangentsChanged(), curve.keysChanged()"));
        // The types came before the handles: the left handle could no longer be set.
        QCOMPARE(c[0]->getTangentType(TangentSide::left), Type::linear);
        QVERIFY(c[0]->getTangentOffset(TangentSide::left) != qMakePair(-9.0F, 0.0F));
        QCOMPARE(c[0]->getTangentOffset(TangentSide::right), qMakePair(7.0F, 7.0F));
    }

    void restoringWithEmptyMapsLeavesTheDepthRaised() {
        Curve c;
        c.curve.restoreKeys({}, {}, {}, {}, {});
        QCOMPARE(c.recorder.take(), QString());
        c[0]->setValue(8.0F);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(8)"));
    }

    void bulkEditsDoNotRecomputeOtherKeys() {
        EditableMotionCurve curve;
        auto* const edited = new EditableMotionCurveKey;
        auto* const automatic = new EditableMotionCurveKey;
        curve.insert(0, edited);
        curve.insert(30, automatic);
        const QString before = Snapshot::of(*automatic);
        curve.setKeysSmooth(EditableMotionCurve::KeysSet{edited}, true);
        QCOMPARE(Snapshot::of(*automatic), before);
    }

    void theSettingsSlotsChangeNothing() {
        VQ::Animation::MotionCurve plain;
        plain.setValueLimits({-1.0F, 1.0F});
        plain.setMaxAbsoluteDerivative(3.0F);
        EditableMotionCurve curve(plain);
        SignalRecorder recorder;
        recorder.watch(curve);
        const auto timeUnit = curve.getTimeUnit();
        curve.setTimeUnit(EditableMotionCurve::RationalSeconds(boost::rational<int>(1, 7)));
        curve.setFps(12);
        curve.setValueLimits({0.0F, 9.0F});
        curve.setMinValue(-10.0F);
        curve.setMaxValue(10.0F);
        curve.setMaxAbsoluteDerivative(10.0F);
        QCOMPARE(curve.getValueLimits(), qMakePair(-1.0F, 1.0F));
        QVERIFY(curve.getTimeUnit() == timeUnit);
        QCOMPARE(curve.getMaxAbsoluteDerivative(), 3.0F);
        QCOMPARE(recorder.take(), QString());
    }

    void aValueThatIsNoSideChangesNothing() {
        Curve c;
        const QString before = Snapshot::of(c.curve);
        const auto noSide = static_cast<TangentSide>(2);
        c.curve.moveTangents(c.all(), noSide, {8.0F, 8.0F});
        c.curve.setTangentsType({{c[0], noSide}}, Type::linear);
        QCOMPARE(Snapshot::of(c.curve), before);
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged(), curve.keysChanged()"));
    }

    void eachKeyGetsItsOwnStateInTheMapsOrder() {
        Curve c;
        c[1]->setSmooth(true);
        c.recorder.take();
        c.curve.setKeysSmooth({{c[2], true}, {c[1], false}, {c[0], true}});
        QCOMPARE(c.recorder.take(), QString("a.smoothChanged(true), b.smoothChanged(false), "
                                            "c.smoothChanged(true), curve.keysChanged()"));
    }

    void rightHandlesAreRestoredAfterLeftOnes() {
        Curve c;
        c.curve.restoreKeys({{c[0], {TangentSide::left, Type::bezier}}}, {{c[0], {-9.0F, 4.0F}}},
                            {{c[0], {7.0F, 5.0F}}}, {{c[0], false}}, {{c[0], true}});
        QCOMPARE(c[0]->getTangentOffset(TangentSide::right), qMakePair(7.0F, 5.0F));
        QCOMPARE(c[0]->getTangentOffset(TangentSide::left), qMakePair(-7.0F, -5.0F));
    }

    void restoringWithOneEmptyMapLeavesTheDepthRaised_data() {
        QTest::addColumn<int>("emptyMap");
        QTest::newRow("none") << -1;
        QTest::newRow("types") << 0;
        QTest::newRow("left handles") << 1;
        QTest::newRow("right handles") << 2;
        QTest::newRow("smooth") << 3;
        QTest::newRow("symmetrical") << 4;
    }
    void restoringWithOneEmptyMapLeavesTheDepthRaised() {
        QFETCH(int, emptyMap);
        Curve c;
        EditableMotionCurve::TangentTypeMap types{{c[0], {TangentSide::left, Type::linear}}};
        EditableMotionCurve::TangentPosMap left{{c[0], {-4.0F, 0.0F}}};
        EditableMotionCurve::TangentPosMap right{{c[0], {4.0F, 0.0F}}};
        EditableMotionCurve::KeyStateMap smooth{{c[0], true}};
        EditableMotionCurve::KeyStateMap symmetrical{{c[0], true}};
        switch (emptyMap) {
        case 0:
            types.clear();
            break;
        case 1:
            left.clear();
            break;
        case 2:
            right.clear();
            break;
        case 3:
            smooth.clear();
            break;
        case 4:
            symmetrical.clear();
            break;
        default:
            break;
        }
        c.curve.restoreKeys(types, left, right, smooth, symmetrical);
        const int announced = emptyMap == -1 ? 1 : 0;
        QCOMPARE(c.recorder.count("curve.keysChanged()"), announced);
        c[1]->setValue(8.0F);
        QCOMPARE(c.recorder.count("curve.keysChanged()"), 2 * announced);
    }

    // Bulk edits move no key; what a slot moves meanwhile is not looked for.
    void bulkEditsDoNotCheckTheGreatestFrame_data() { editRows(); }
    void bulkEditsDoNotCheckTheGreatestFrame() {
        Curve c;
        bool isMoved = false;
        const auto move = [&] { isMoved = c.curve.translateKey(c[2], 90); };
        QObject::connect(c[1], &EditableMotionCurveKey::tangentsChanged, move);
        QObject::connect(c[1], &EditableMotionCurveKey::smoothChanged, move);
        QObject::connect(c[1], &EditableMotionCurveKey::symmetricalChanged, move);
        fetchedEdit()(c.curve, c[1]);
        QVERIFY(isMoved);
        QVERIFY(!c.recorder.take().contains("greaterIndexChanged"));
    }

    void aBulkEditFromASlotIsAnnouncedWithTheOuterOne() {
        Curve c;
        QObject::connect(c[0], &EditableMotionCurveKey::smoothChanged,
                         [&] { c.curve.setKeysSymmetrical(EditableMotionCurve::KeysSet{c[1]}, true); });
        c.curve.setKeysSmooth(EditableMotionCurve::KeysSet{c[0]}, true);
        QCOMPARE(c.recorder.take(), QString("a.smoothChanged(true), b.symmetricalChanged(true), "
                                            "curve.keysChanged()"));
    }
};

QTEST_GUILESS_MAIN(EditableMotionCurveParametersTest)
#include "EditableMotionCurveParametersTest.moc"
