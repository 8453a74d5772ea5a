#include "LetteredCurve.h"
#include "RecordedCurve.h"

#include <QtTest>

#include <memory>
#include <stdexcept>

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

class BatchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void movingNothingLeavesTheBatchDepthRaised() {
        LetteredCurve c({1});
        c.curve.moveKeys({});
        QCOMPARE(c.recorder.take(), QString());
        c[0]->setValue(3.0F);
        c.curve.translateKey(c[0], 20);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(3), a.indexChanged(20)"));
        QVERIFY(!c.isListening());
    }

    void otherOperationsLeaveTheDepthAsTheyFoundIt() {
        LetteredCurve c({1, 2});
        c.curve.moveKeys({{c[0], {5, 0}}});
        QVERIFY(c.isListening());
        c.curve.reorganizeKeys({});
        QVERIFY(c.isListening());
        c.curve.releaseAndInsertKeys({}, {});
        QVERIFY(c.isListening());
    }

    void emptyReorganisationAndReplacementRunTheirBatchEnd() {
        LetteredCurve c({1});
        c.curve.reorganizeKeys({});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        c.curve.releaseAndInsertKeys({}, {});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
    }

    void automaticHandlesAreRecomputedBeforeTheBatchEnds() {
        EditableMotionCurve curve;
        auto* const low = new EditableMotionCurveKey;
        auto* const high = new EditableMotionCurveKey;
        curve.insert(0, low);
        curve.insert(30, high);
        SignalRecorder recorder;
        recorder.watch(*low, "low");
        recorder.watch(*high, "high");
        recorder.watch(curve);
        curve.moveKeys({{high, {60, 0}}});
        QCOMPARE(recorder.take(),
                 QString("high.indexChanged(60), low.tangentsChanged(), high.tangentsChanged(), "
                         "curve.keysChanged(), curve.greaterIndexChanged(60, 30)"));
        QCOMPARE(low->getTangentOffset(ZT::TangentSide::right), qMakePair(20.0F, 0.0F));
    }

    void anExceptionFromASlotLowersTheBatchDepth() {
        LetteredCurve c({1});
        const auto connection = QObject::connect(c[0], &EditableMotionCurveKey::valueChanged,
                                                 [] { throw std::runtime_error("slot"); });
        QVERIFY_EXCEPTION_THROWN(c.curve.moveKeys({{c[0], {1, 5}}}), std::runtime_error);
        QObject::disconnect(connection);
        QVERIFY(c.isListening());
    }

    void aBatchStartedFromASlotIsAnnouncedWithTheOuterOne() {
        LetteredCurve c({1, 2});
        bool isNested = false;
        QObject::connect(c[0], &EditableMotionCurveKey::valueChanged, [&] {
            isNested = true;
            c.curve.moveKeys({{c[1], {9, 0}}});
        });
        c.curve.moveKeys({{c[0], {1, 5}}});
        QVERIFY(isNested);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), b.indexChanged(9), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 2)"));
    }

    void singleEditsFromASlotLeaveTheirChecksToTheBatch() {
        LetteredCurve c({1, 2});
        EditableMotionCurveKey* const added = LetteredCurve::newKey();
        c.recorder.watch(*added, "new");
        QObject::connect(c[0], &EditableMotionCurveKey::valueChanged, [&] { c.curve.insert(50, added); });
        c.curve.moveKeys({{c[0], {1, 5}}});
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(5), curve.keyAdded(new), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(50, 2)"));
    }

    void aBatchStartedWhileAnotherIsAnnouncedIsAnnouncedInsideIt() {
        LetteredCurve c({1});
        QObject context;
        QObject::connect(&c.curve, &EditableMotionCurve::keysChanged, &context, [&] {
            if (ZT::index(c[0]) == 5) {
                c.curve.moveKeys({{c[0], {9, 0}}});
            }
        });
        c.curve.moveKeys({{c[0], {5, 0}}});
        QCOMPARE(c.recorder.take(),
                 QString("a.indexChanged(5), curve.keysChanged(), a.indexChanged(9), curve.keysChanged(), "
                         "curve.greaterIndexChanged(9, 5), curve.greaterIndexChanged(9, 1)"));
    }

    void aDepthRaisedWhileABatchIsAnnouncedHidesItsGreatestFrame() {
        LetteredCurve c({1});
        QObject::connect(&c.curve, &EditableMotionCurve::keysChanged, [&] { c.curve.moveKeys({}); });
        c.curve.moveKeys({{c[0], {5, 0}}});
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(5), curve.keysChanged()"));
    }

    void aRaisedDepthSilencesBulkOperationsToo() {
        LetteredCurve c({1});
        c.curve.moveKeys({});
        c.curve.moveKeys({{c[0], {5, 0}}});
        c.curve.reorganizeKeys({{c[0], 6}});
        c.curve.releaseAndInsertKeys({{c[0], 6}}, {{c[0], 7}});
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(5), a.indexChanged(6), "
                                            "curve.keyAboutToBeRemoved(a), curve.keyAdded(a)"));
    }

    void insideABatchSingleEditsAnnounceNeitherKeysNorTheGreatestFrame() {
        RecordedCurve watched;
        watched.curve.moveKeys({}); // Leaves the curve inside a batch.
        QCOMPARE(watched.recorder.take(), QString());
        EditableMotionCurveKey* const a = watched.make("a");
        watched.curve.insert(5, a);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAdded(a)"));
        a->setValue(1.0F);
        QCOMPARE(watched.recorder.take(), QString("a.valueChanged(1)"));
        QVERIFY(watched.curve.translateKey(a, 8));
        watched.curve.insert(9, a);
        QCOMPARE(watched.recorder.take(), QString("a.indexChanged(8), a.indexChanged(9)"));
        watched.curve.updateBezierAutoTangents();
        QCOMPARE(watched.recorder.take(), QString("a.tangentsChanged()"));
        const std::unique_ptr<EditableMotionCurveKey> released(watched.curve.release(9));
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(a)"));
        watched.add(5, "b");
        watched.curve.remove(5U);
        QCOMPARE(watched.recorder.take(), QString("curve.keyAboutToBeRemoved(b)"));
        watched.add(5, "c");
        watched.curve.clear();
        QCOMPARE(watched.recorder.take(), QString("curve.curveCleared()"));
    }
};

QTEST_GUILESS_MAIN(BatchTest)
#include "BatchTest.moc"
