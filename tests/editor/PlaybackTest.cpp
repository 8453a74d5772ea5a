#include "document/Playback.h"

#include "tests/editor/support/Scene.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <limits>

using namespace EditorScene;
using Editor::Playback;

namespace {

/// A scene that plays 25 frames a second from 1 to 100.
struct Stage {
    Stage()
        : playback(scene.document) {
        scene.markers().setEndIndex(100);
    }

    unsigned int selected() { return scene.markers().selectedIndex(); }

    Scene scene;
    Playback playback;
};

// Nothing is done for a while, as where a view is slow; then what is due.
void sleepThrough(int milliseconds) {
    QTest::qSleep(milliseconds);
    QTest::qWait(150); // The timer comes once more at least.
}

} // namespace

class PlaybackTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void framesFollowTheClock();
    void itStartsAtTheStartWhereTheFrameIsOutside();
    void itLoops();
    void itStopsAtTheEndWithoutLooping();
    void stoppingKeepsTheFrame();
    void aFrameThatIsSelectedMeanwhileIsGoneOnFrom();
    void startingAndStoppingIsAnnouncedOnce();
    void anotherAnimationStopsIt();
    void oneFrameCanBePlayed();
    void markersMayMoveMeanwhile();
    void framesAtTheEndOfAllFramesCanBePlayed();
};

void PlaybackTest::framesFollowTheClock() {
    Stage stage;
    stage.scene.markers().setSelectedIndex(10);
    stage.playback.play();
    QElapsedTimer clock;
    clock.start();
    sleepThrough(600); // Of the frames meanwhile none is made up for.
    const auto latest = 10 + clock.elapsed() * 25 / 1000;
    QVERIFY2(stage.selected() >= 10 + 15 && stage.selected() <= latest,
             qPrintable(QString::number(stage.selected())));
    const QSignalSpy frames(&stage.scene.markers(), &ZT::AnimationMarkers::selectedIndexChanged);
    QTest::qWait(400);
    stage.playback.stop();
    QVERIFY(frames.count() >= 3 && frames.count() <= 40); // Each frame is selected once.
}

void PlaybackTest::itStartsAtTheStartWhereTheFrameIsOutside() {
    for (const unsigned int frame : {0U, 19U, 100U, 101U, 5000U}) {
        Stage stage;
        stage.scene.markers().setStartIndex(20);
        stage.scene.markers().setSelectedIndex(frame);
        stage.playback.play();
        QCOMPARE(stage.selected(), 20U);
    }
    Stage stage;
    stage.scene.markers().setSelectedIndex(99);
    stage.playback.play();
    QCOMPARE(stage.selected(), 99U);
}

void PlaybackTest::itLoops() {
    Stage stage;
    stage.scene.markers().setStartIndex(96);
    stage.scene.markers().setSelectedIndex(97);
    QVERIFY(stage.playback.isLooping());
    stage.playback.play();
    bool hasBeenAtEnd = false;
    bool hasBeenAtStart = false;
    connect(&stage.scene.markers(), &ZT::AnimationMarkers::selectedIndexChanged, this,
            [&](unsigned int frame) {
                QVERIFY(frame >= 96 && frame <= 100);
                hasBeenAtEnd = hasBeenAtEnd || frame == 100;
                hasBeenAtStart = hasBeenAtStart || (hasBeenAtEnd && frame == 96);
            });
    QTRY_VERIFY(hasBeenAtStart);
    QVERIFY(stage.playback.isPlaying());
    sleepThrough(1000); // Several times round at once.
    QVERIFY(stage.playback.isPlaying());
}

void PlaybackTest::itStopsAtTheEndWithoutLooping() {
    Stage stage;
    stage.playback.setLooping(false);
    stage.scene.markers().setSelectedIndex(95);
    stage.playback.play();
    QTRY_VERIFY(!stage.playback.isPlaying());
    QCOMPARE(stage.selected(), 100U);
    stage.playback.play(); // From the start again.
    QCOMPARE(stage.selected(), 1U);
}

void PlaybackTest::stoppingKeepsTheFrame() {
    Stage stage;
    stage.playback.play();
    QTRY_VERIFY(stage.selected() > 2);
    stage.playback.stop();
    const unsigned int frame = stage.selected();
    QTest::qWait(200);
    QCOMPARE(stage.selected(), frame);
    stage.scene.markers().setSelectedIndex(50);
    stage.playback.play();
    QCOMPARE(stage.selected(), 50U);
}

void PlaybackTest::aFrameThatIsSelectedMeanwhileIsGoneOnFrom() {
    Stage stage;
    stage.playback.play();
    QTRY_VERIFY(stage.selected() > 2);
    for (const unsigned int frame : {40U, 5U}) {
        QElapsedTimer clock;
        clock.start();
        stage.scene.markers().setSelectedIndex(frame);
        QTRY_VERIFY(stage.selected() > frame);
        QVERIFY(stage.selected() <= frame + clock.elapsed() * 25 / 1000);
    }
}

void PlaybackTest::startingAndStoppingIsAnnouncedOnce() {
    Stage stage;
    QSignalSpy playing(&stage.playback, &Playback::playingChanged);
    stage.playback.stop();
    stage.playback.play();
    stage.playback.play();
    QVERIFY(stage.playback.isPlaying());
    stage.playback.stop();
    stage.playback.stop();
    QVERIFY(!stage.playback.isPlaying());
    QCOMPARE(playing.count(), 2);
    QCOMPARE(playing[0][0].toBool(), true);
    QCOMPARE(playing[1][0].toBool(), false);
}

void PlaybackTest::anotherAnimationStopsIt() {
    Stage stage;
    stage.playback.play();
    stage.scene.document.replace(animationOf({"other"}), QString());
    QVERIFY(!stage.playback.isPlaying());
    QTest::qWait(150);
    QCOMPARE(stage.selected(), 1U);
    stage.playback.play();
    QVERIFY(stage.playback.isPlaying());
}

void PlaybackTest::oneFrameCanBePlayed() {
    Stage stage;
    stage.scene.markers().setEndIndex(1);
    stage.playback.play();
    QTest::qWait(150);
    QVERIFY(stage.playback.isPlaying());
    QCOMPARE(stage.selected(), 1U);
    stage.playback.setLooping(false);
    QTRY_VERIFY(!stage.playback.isPlaying());
    QCOMPARE(stage.selected(), 1U);
}

void PlaybackTest::markersMayMoveMeanwhile() {
    Stage stage;
    stage.scene.markers().setSelectedIndex(50);
    stage.playback.play();
    stage.scene.markers().setEndIndex(10);
    QTRY_VERIFY(stage.selected() <= 10);
    stage.playback.stop();
    // A reset leaves the end before the start.
    stage.scene.markers().setStartIndex(70);
    stage.scene.markers().resetEndFrame();
    stage.playback.play();
    QTest::qWait(150);
    QCOMPARE(stage.selected(), 70U);
}

void PlaybackTest::framesAtTheEndOfAllFramesCanBePlayed() {
    constexpr unsigned int lastFrame = std::numeric_limits<unsigned int>::max();
    Stage stage;
    stage.scene.markers().setEndIndex(lastFrame);
    stage.scene.markers().setStartIndex(lastFrame - 2U);
    stage.scene.markers().setSelectedIndex(lastFrame - 1U);
    stage.playback.play();
    QTest::qWait(300);
    QVERIFY(stage.selected() >= lastFrame - 2U);
}

QTEST_GUILESS_MAIN(PlaybackTest)
#include "PlaybackTest.moc"
