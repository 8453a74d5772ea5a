#include "tests/support/SignalRecorder.h"

#include <QtTest>

#include <memory>

class AnimationMarkersTest : public QObject {
    Q_OBJECT

    ZT::EditableAnimation _animation;
    std::unique_ptr<ZT::AnimationMarkers> _markers;
    std::unique_ptr<SignalRecorder> _recorder;

private Q_SLOTS:
    void init() {
        _markers = std::make_unique<ZT::AnimationMarkers>(&_animation);
        _recorder = std::make_unique<SignalRecorder>();
        _recorder->watch(*_markers);
    }

    void newMarkersStandAtOneAndTheRangeIsHidden() {
        QCOMPARE(_markers->selectedIndex(), 1U);
        QCOMPARE(_markers->startIndex(), 1U);
        QCOMPARE(_markers->endIndex(), 1U);
        QCOMPARE(_markers->rangeStartIndex(), 1U);
        QCOMPARE(_markers->rangeEndIndex(), 1U);
        QVERIFY(!_markers->isRangeVisible());
        QCOMPARE(_markers->animation(), &_animation);
        QCOMPARE(_markers->parent(), &_animation);
    }

    void settingTheStoredValueDoesNothing() {
        _markers->setSelectedIndex(1);
        _markers->setStartIndex(1);
        _markers->setEndIndex(1);
        _markers->setRangeStartIndex(1);
        _markers->setRangeEndIndex(1);
        _markers->setRangeVisible(false);
        _markers->resetStartFrame();
        QCOMPARE(_recorder->take(), QString());
    }

    void theSelectedFrameIsNotClamped() {
        _markers->setSelectedIndex(4294967295U);
        QCOMPARE(_recorder->take(), QString("markers.selectedIndexChanged(4294967295)"));
    }

    void aStartPastTheEndTakesTheEndAlong() {
        _markers->setEndIndex(3);
        _recorder->take();
        _markers->setStartIndex(5);
        QCOMPARE(_markers->startIndex(), 5U);
        QCOMPARE(_markers->endIndex(), 5U);
        QCOMPARE(_recorder->take(), QString("markers.startIndexChanged(5), markers.endIndexChanged(5)"));
    }

    void anEndBeforeTheStartTakesTheStartAlong() {
        _markers->setStartIndex(4);
        _recorder->take();
        _markers->setEndIndex(2);
        QCOMPARE(_markers->startIndex(), 2U);
        QCOMPARE(_recorder->take(), QString("markers.endIndexChanged(2), markers.startIndexChanged(2)"));
    }

    void theRangeKeepsItsOrderTheSameWay() {
        _markers->setRangeStartIndex(7);
        QCOMPARE(_recorder->take(),
                 QString("markers.rangeStartIndexChanged(7), markers.rangeEndIndexChanged(7)"));
        _markers->setRangeEndIndex(12);
        QCOMPARE(_recorder->take(), QString("markers.rangeEndIndexChanged(12)"));
        _markers->setRangeEndIndex(3);
        QCOMPARE(_recorder->take(),
                 QString("markers.rangeEndIndexChanged(3), markers.rangeStartIndexChanged(3)"));
    }

    void theStateIsStoredBeforeItsSignal() {
        unsigned int seen = 0;
        QObject::connect(_markers.get(), &ZT::AnimationMarkers::startIndexChanged,
                         [&] { seen = _markers->startIndex(); });
        _markers->setStartIndex(9);
        QCOMPARE(seen, 9U);
    }

    void theRangeIsShownAndHidden() {
        _markers->setRangeVisible(true);
        QVERIFY(_markers->isRangeVisible());
        _markers->setRangeVisible(true);
        QCOMPARE(_recorder->take(), QString("markers.rangeVisibilityChanged(true)"));
    }

    void resettingTheStartLeavesTheEnd() {
        _markers->setStartIndex(5);
        _recorder->take();
        _markers->resetStartFrame();
        QCOMPARE(_markers->endIndex(), 5U);
        QCOMPARE(_recorder->take(), QString("markers.startIndexChanged(1)"));
    }

    void resettingTheEndLeavesTheStartWhereItIs() {
        ZT::EditableAnimation animation;
        auto* const layer = new ZT::EditableAnimationLayer;
        animation.push_back(layer);
        layer->getCurve()->insert(3, new ZT::EditableMotionCurveKey);
        ZT::AnimationMarkers& markers = *animation.getMarkers();
        markers.setStartIndex(8);
        SignalRecorder recorder;
        recorder.watch(markers);
        markers.resetEndFrame();
        QCOMPARE(markers.startIndex(), 8U);
        QCOMPARE(markers.endIndex(), 3U);
        markers.resetEndFrame();
        QCOMPARE(recorder.take(), QString("markers.endIndexChanged(3)"));
    }

    void aMarkerOnItsSideOfTheOtherMovesAlone() {
        _markers->setEndIndex(9);
        QCOMPARE(_recorder->take(), QString("markers.endIndexChanged(9)"));
        _markers->setStartIndex(9);
        QCOMPARE(_recorder->take(), QString("markers.startIndexChanged(9)"));
        _markers->setRangeEndIndex(4);
        QCOMPARE(_recorder->take(), QString("markers.rangeEndIndexChanged(4)"));
        _markers->setRangeStartIndex(0);
        QCOMPARE(_recorder->take(), QString("markers.rangeStartIndexChanged(0)"));
        QCOMPARE(_markers->rangeEndIndex(), 4U);
    }

    void theOtherMarkerFollowsAfterTheFirstSignal() {
        QStringList seen;
        const auto note = [&] {
            seen << QString("%1-%2 %3-%4")
                        .arg(_markers->startIndex())
                        .arg(_markers->endIndex())
                        .arg(_markers->rangeStartIndex())
                        .arg(_markers->rangeEndIndex());
        };
        using Markers = ZT::AnimationMarkers;
        QObject::connect(_markers.get(), &Markers::startIndexChanged, note);
        QObject::connect(_markers.get(), &Markers::endIndexChanged, note);
        QObject::connect(_markers.get(), &Markers::rangeStartIndexChanged, note);
        QObject::connect(_markers.get(), &Markers::rangeEndIndexChanged, note);
        _markers->setStartIndex(5);
        _markers->setEndIndex(2);
        _markers->setRangeStartIndex(7);
        _markers->setRangeEndIndex(3);
        QCOMPARE(seen.join(", "),
                 QString("5-1 1-1, 5-5 1-1, 5-2 1-1, 2-2 1-1, 2-2 7-1, 2-2 7-7, 2-2 7-3, 2-2 3-3"));
    }

    void withoutAnAnimationTheEndIsResetToTheFirstFrame() {
        ZT::AnimationMarkers markers(nullptr);
        markers.resetEndFrame();
        QCOMPARE(markers.endIndex(), 0U);
    }

    // Only a change repairs the order of a pair.
    void settingTheStoredEndDoesNotMoveAStartPastIt() {
        _markers->setEndIndex(2);
        _markers->setStartIndex(8);
        _markers->resetEndFrame();
        _recorder->take();
        QCOMPARE(_markers->endIndex(), 0U);
        _markers->setEndIndex(0);
        _markers->setStartIndex(8);
        QCOMPARE(_recorder->take(), QString());
        QCOMPARE(_markers->startIndex(), 8U);
    }

    void settingTheStoredRangeEndDoesNotMoveAStartPastIt() {
        _markers->setRangeEndIndex(3);
        QString atThatTime;
        QObject::connect(_markers.get(), &ZT::AnimationMarkers::rangeStartIndexChanged, [&] {
            _recorder->take();
            _markers->setRangeEndIndex(3);
            atThatTime = _recorder->take() + QString::number(_markers->rangeStartIndex());
        });
        _markers->setRangeStartIndex(7);
        QCOMPARE(atThatTime, QString("7"));
    }

    void hidingTheRangeIsAnnouncedToo() {
        _markers->setRangeVisible(true);
        _recorder->take();
        _markers->setRangeVisible(false);
        QVERIFY(!_markers->isRangeVisible());
        QCOMPARE(_recorder->take(), QString("markers.rangeVisibilityChanged(false)"));
    }
};

QTEST_GUILESS_MAIN(AnimationMarkersTest)
#include "AnimationMarkersTest.moc"
