#include "LetteredCurve.h"
#include "model/EditableMotionCurveExceptions.h"
#include "tests/model/TwoEntries.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using ZT::EditableMotionCurve;
using ZT::EditableMotionCurveKey;

class ReorganizingKeysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void twoKeysExchangeTheirFrames() {
        LetteredCurve c({3, 8});
        c.curve.reorganizeKeys({{c[0], 8}, {c[1], 3}});
        QCOMPARE(c.layout(), QString("b@3 a@8"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(8), b.indexChanged(3), curve.keysChanged()"));
    }

    void aKeyPlacedWhereItStoodIsAnnouncedToo() {
        LetteredCurve c({3});
        c.curve.reorganizeKeys({{c[0], 3}});
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(3), curve.keysChanged()"));
    }

    void ofAKeyNamedTwiceTheFirstEntryPlacesIt() {
        if (!mapsHoldTwoEntries) {
            QSKIP("Qt 6's QMap cannot name a key twice");
        }
        LetteredCurve c({3, 8});
        const auto twice = entriesOf({{c[0], 7}, {c[0], 5}}); // The last is walked first.
        c.curve.reorganizeKeys(twice);
        QCOMPARE(c.layout(), QString("a@5 b@8"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(5), curve.keysChanged()"));
    }

    void namedKeysHaveLeftBeforeTheFirstIsPlaced() {
        LetteredCurve c({1, 2, 3});
        bool wasFree = false;
        bool wasHeld = true;
        QObject::connect(c[0], &EditableMotionCurveKey::indexChanged, [&] {
            wasFree = c.curve.isIndexAvailable(1) && c.curve.isIndexAvailable(2);
            wasHeld = c.curve._find(c[1]) != c.curve.end();
        });
        c.curve.reorganizeKeys({{c[0], 9}, {c[1], 1}});
        QVERIFY(wasFree);
        QVERIFY(!wasHeld);
        QCOMPARE(c.layout(), QString("b@1 c@3 a@9"));
        QCOMPARE(c.recorder.take(), QString("a.indexChanged(9), b.indexChanged(1), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 3)"));
    }

    void aKeyWhoseFrameIsTakenLeavesTheCurveAndIsReported() {
        LetteredCurve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> failed(c[0]);
        bool wasHeldWhenAnnounced = true;
        EditableMotionCurve* parentWhenAnnounced = &c.curve;
        QObject::connect(&c.curve, &EditableMotionCurve::keyAboutToBeRemoved, [&] {
            wasHeldWhenAnnounced = c.curve._find(failed.get()) != c.curve.end();
            parentWhenAnnounced = failed->getParentCurve();
        });
        try {
            c.curve.reorganizeKeys({{c[0], 8}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(QString(failure.what()), QString("Editable motion curve: reorganization failed"));
            QCOMPARE(failure.failedKeys, std::vector<EditableMotionCurveKey*>{c[0]});
        }
        QVERIFY(!wasHeldWhenAnnounced);
        QCOMPARE(parentWhenAnnounced, nullptr);
        QCOMPARE(failed->getParentCurve(), nullptr);
        QCOMPARE(c.layout(), QString("b@8"));
        QCOMPARE(c.recorder.take(), QString("curve.keyAboutToBeRemoved(a), curve.keysChanged()"));
        failed->setValue(4.0F);
        QCOMPARE(c.recorder.take(), QString("a.valueChanged(4)"));
        QVERIFY(c.isListening());
    }

    void ofTwoKeysSentToOneFrameTheFirstByAddressWins() {
        LetteredCurve c({3, 8});
        const std::unique_ptr<EditableMotionCurveKey> failed(c[1]);
        QVERIFY_EXCEPTION_THROWN(c.curve.reorganizeKeys({{c[0], 5}, {c[1], 5}}),
                                 ZT::EditableMotionCurveReorganizedFail);
        QCOMPARE(c.layout(), QString("a@5"));
        QCOMPARE(c.recorder.take(),
                 QString("a.indexChanged(5), curve.keyAboutToBeRemoved(b), curve.keysChanged(), "
                         "curve.greaterIndexChanged(5, 8)"));
    }

    void allFailuresAreReportedTogetherAfterAllSignals() {
        LetteredCurve c({1, 2, 3, 4});
        std::vector<EditableMotionCurveKey*> expected{c[0], c[2]};
        std::unique_ptr<EditableMotionCurveKey> newcomer(LetteredCurve::newKey());
        c.recorder.watch(*newcomer, "new");
        expected.push_back(newcomer.get());
        std::sort(expected.begin(), expected.end(), std::less<>());
        try {
            c.curve.reorganizeKeys({{c[0], 2}, {c[2], 2}, {c[3], 8}, {newcomer.get(), 2}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(c.recorder.take(), QString("curve.keyAboutToBeRemoved(a), curve.keyAboutToBeRemoved(c), "
                                                "d.indexChanged(8), curve.keysChanged(), "
                                                "curve.greaterIndexChanged(8, 4)"));
            QCOMPARE(failure.failedKeys, expected);
        }
        QCOMPARE(c.layout(), QString("b@2 d@8"));
        QVERIFY(c.isListening());
        delete c[0];
        delete c[2];
    }

    void aNewcomerIsTakenIn() {
        LetteredCurve c({3});
        EditableMotionCurveKey* const newcomer = LetteredCurve::newKey();
        c.recorder.watch(*newcomer, "new");
        c.curve.reorganizeKeys({{newcomer, 9}});
        QCOMPARE(c.recorder.take(), QString("new.indexChanged(9), curve.keyAdded(new), curve.keysChanged(), "
                                            "curve.greaterIndexChanged(9, 3)"));
        QCOMPARE(newcomer->getParentCurve(), &c.curve);
        newcomer->setValue(1.0F);
        QCOMPARE(c.recorder.take(), QString("new.valueChanged(1), curve.keysChanged()"));
    }

    void aNewcomerThatFailsIsLeftAsItWas() {
        LetteredCurve c({3});
        const std::unique_ptr<EditableMotionCurveKey> newcomer(LetteredCurve::newKey());
        try {
            c.curve.reorganizeKeys({{newcomer.get(), 3}});
            QFAIL("the reorganisation was not refused");
        } catch (const ZT::EditableMotionCurveReorganizedFail& failure) {
            QCOMPARE(failure.failedKeys, std::vector<EditableMotionCurveKey*>{newcomer.get()});
        }
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(newcomer->getParentCurve(), nullptr);
    }

    void reorganisingSkipsNullAndForeignKeys() {
        LetteredCurve c({3});
        LetteredCurve other({5});
        c.curve.reorganizeKeys({{nullptr, 9}, {other[0], 9}});
        QCOMPARE(c.recorder.take(), QString("curve.keysChanged()"));
        QCOMPARE(c.layout(), QString("a@3"));
        QCOMPARE(other.layout(), QString("a@5"));
    }
};

QTEST_GUILESS_MAIN(ReorganizingKeysTest)
#include "ReorganizingKeysTest.moc"
