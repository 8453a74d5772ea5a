#include "PlainAnimation.h"
#include "tests/support/SignalRecorder.h"

#include <QtTest>

using ZT::EditableAnimation;
using ZT::EditableMotionCurveKey;

namespace {

void report(EditableAnimation& animation, unsigned int newGreater, unsigned int previousGreater) {
    QVERIFY(QMetaObject::invokeMethod(&animation, "_onGreaterCurveIndexChanged",
                                      Q_ARG(unsigned int, newGreater), Q_ARG(unsigned int, previousGreater)));
}

} // namespace

class GreatestFrameTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRaisedGreatestFrameIsAnnounced() {
        EditableAnimation animation;
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, 25, 0);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        report(animation, 30, 20);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        report(animation, 30, 31);
        QCOMPARE(recorder.take(), QString());
        report(animation, 10, 15);
        QCOMPARE(recorder.take(), QString());
    }

    void aLoweredMaximumIsMeasuredAgain() {
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 20}}));
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, 30, 20);
        recorder.take();
        report(animation, 10, 30);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        // The announced maximum is 20 now: a report of what is there already announces nothing.
        report(animation, 20, 10);
        QCOMPARE(recorder.take(), QString());
    }

    void aLoweredMaximumThatAnotherLayerHoldsIsNotAnnounced() {
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 30}}));
        report(animation, 30, 20);
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, 10, 30);
        QCOMPARE(recorder.take(), QString());
    }

    void theFirstReportAfterConstructionIsComparedWithZero() {
        EditableAnimation animation(plainAnimation({{"a", 50}, {"b", 5}}));
        SignalRecorder recorder;
        recorder.watch(animation);
        animation[1]->getCurve()->insert(7, new EditableMotionCurveKey);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        QCOMPARE(animation.getGreaterIndex(), 50U);
    }

    void aReportIsJudgedByTheAnnouncedMaximum_data() {
        QTest::addColumn<unsigned int>("announced");
        QTest::addColumn<unsigned int>("newGreater");
        QTest::addColumn<unsigned int>("previousGreater");
        QTest::addColumn<bool>("isAnnounced");
        QTest::addColumn<unsigned int>("announcedAfterwards");
        // The layers reach 10 and 20.
        QTest::newRow("above") << 25U << 30U << 20U << true << 30U;
        QTest::newRow("above, though no curve reaches it") << 0U << 1U << 99U << true << 1U;
        QTest::newRow("equal") << 25U << 25U << 40U << false << 25U;
        QTest::newRow("below, from a lower curve") << 30U << 10U << 15U << false << 30U;
        QTest::newRow("below, from just under the maximum") << 30U << 10U << 29U << false << 30U;
        QTest::newRow("below, from the maximum") << 30U << 10U << 30U << true << 20U;
        QTest::newRow("below, from above the maximum") << 30U << 10U << 31U << true << 20U;
        QTest::newRow("below, while another layer holds it") << 20U << 10U << 20U << false << 20U;
        QTest::newRow("below, and the layers reach higher") << 15U << 10U << 15U << true << 20U;
        QTest::newRow("compared without sign") << 1U << 4000000000U << 1U << true << 4000000000U;
        QTest::newRow("no report changes zero") << 0U << 0U << 50U << false << 0U;
    }
    void aReportIsJudgedByTheAnnouncedMaximum() {
        QFETCH(unsigned int, announced);
        QFETCH(unsigned int, newGreater);
        QFETCH(unsigned int, previousGreater);
        QFETCH(bool, isAnnounced);
        QFETCH(unsigned int, announcedAfterwards);
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 20}}));
        report(animation, announced, 0);
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, newGreater, previousGreater);
        QCOMPARE(recorder.take(), isAnnounced ? QString("animation.greaterIndexChanged()") : QString());
        // The announced maximum is the one number that can be reported without effect while the next cannot.
        report(animation, announcedAfterwards, 0);
        QCOMPARE(recorder.take(), QString());
        report(animation, announcedAfterwards + 1, 0);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
    }

    void withoutLayersALoweredMaximumBecomesZero() {
        EditableAnimation animation(plainAnimation({{"a", 30}}));
        report(animation, 30, 0);
        animation.clear();
        SignalRecorder recorder;
        recorder.watch(animation);
        report(animation, 30, 0);
        QCOMPARE(recorder.take(), QString());
        report(animation, 5, 30);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        QCOMPARE(animation.getGreaterIndex(), 0U);
    }

    // Nobody told it of the layer that is gone.
    void theAnnouncedMaximumOutlivesChangesOfTheList() {
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 30}}));
        report(animation, 30, 0);
        animation.erase(++animation.begin());
        SignalRecorder recorder;
        recorder.watch(animation);
        ZT::EditableMotionCurve& curve = *animation[0]->getCurve();
        curve.translateKey(curve.getKey(10), 12);
        QCOMPARE(recorder.take(), QString("animation.layersChanged()"));
    }

    void theLayersHoldTheMaximumTogether() {
        EditableAnimation animation(plainAnimation({{"a", 10}, {"b", 20}}));
        SignalRecorder recorder;
        recorder.watch(animation);
        ZT::EditableMotionCurve& first = *animation[0]->getCurve();
        ZT::EditableMotionCurve& second = *animation[1]->getCurve();
        first.insert(30, new EditableMotionCurveKey);
        second.insert(30, new EditableMotionCurveKey);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        first.remove(30U);
        QCOMPARE(recorder.take(), QString());
        second.remove(30U);
        QCOMPARE(recorder.take(), QString("animation.greaterIndexChanged()"));
        QCOMPARE(animation.getGreaterIndex(), 20U);
    }
};

QTEST_GUILESS_MAIN(GreatestFrameTest)
#include "GreatestFrameTest.moc"
