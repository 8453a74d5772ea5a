#include "TimelineScene.h"

using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;

namespace {

/// All keys of a layer, by address: what must not get lost.
EditorScene::Keys keysOf(EditorScene::Curve& curve) {
    EditorScene::Keys keys;
    for (const auto& [frame, key] : curve) {
        keys.insert(key);
    }
    return keys;
}

} // namespace

class TimelineRangeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDragInTheEmptyLaneMakesARangeAndUndoHidesIt() {
        TimelineScene scene;
        QVERIFY(!scene.markers().isRangeVisible());
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(20), scene.inLane(50)); });
        QVERIFY(scene.markers().isRangeVisible());
        QCOMPARE(scene.range(), QString("20-50"));
        scene.history().undo();
        QVERIFY(!scene.markers().isRangeVisible());
    }

    void aDragToTheLeftMakesARangeAsWell() {
        TimelineScene scene;
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(50), scene.inLane(20)); });
        QCOMPARE(scene.range(), QString("20-50"));
    }

    void anotherRangeIsMadeBesideTheOneThatIsThere() {
        TimelineScene scene;
        scene.setRange(5, 25);
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(60), scene.inLane(80)); });
        QCOMPARE(scene.range(), QString("60-80"));
        QCOMPARE(scene.frames(0), QString("0 10 20 30"));
    }

    void escapeTakesANewRangeBack() {
        TimelineScene scene;
        checkNothingHappens(scene, [&scene] {
            scene.pull(scene.inLane(20), scene.inLane(50));
            QVERIFY(scene.markers().isRangeVisible());
            scene.type(Qt::Key_Escape);
            scene.release(scene.inLane(50));
        });
    }

    void aClickInTheLaneMakesNoRange() {
        TimelineScene scene;
        checkNothingHappens(scene, [&scene] { scene.click(scene.inLane(20)); });
    }

    void theMiddleMovesTheRangeWithItsKeys() {
        TimelineScene scene;
        scene.setRange(8, 22);
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(15), scene.inLane(55)); });
        QCOMPARE(scene.range(), QString("48-62"));
        QCOMPARE(scene.frames(0), QString("0 15 50 60"));
        QCOMPARE(scene.frames(1), QString("25 50"));
    }

    void aRangeMovesBackAndForthWithinOneDrag() {
        TimelineScene scene;
        scene.setRange(8, 22);
        checkNothingHappens(scene, [&scene] {
            scene.pull(scene.inLane(15), scene.inLane(70));
            scene.moveTo(scene.inLane(2));
            scene.moveTo(scene.inLane(15));
            scene.release(scene.inLane(15));
        });
    }

    void theRangeStopsAtFrameZero() {
        TimelineScene scene;
        scene.setRange(18, 32);
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(25), scene.inLane(-8)); });
        QCOMPARE(scene.range(), QString("0-14"));
    }

    void theEndStretchesTheKeysOfTheRange() {
        TimelineScene scene;
        scene.setRange(10, 30);
        checkEdit(scene,
                  [&scene] { scene.dragBetween(scene.onRangeEnd(), scene.onRangeEnd() + scene.wide(20)); });
        QCOMPARE(scene.range(), QString("10-50"));
        QCOMPARE(scene.frames(0), QString("0 10 30 50"));
        QCOMPARE(scene.frames(1), QString("10 60")); // What is behind the range follows its end.
    }

    void theStartStretchesTheKeysOfTheRange() {
        TimelineScene scene;
        scene.setRange(10, 30);
        checkEdit(scene, [&scene] {
            scene.dragBetween(scene.onRangeStart(), scene.onRangeStart() - scene.wide(8));
        });
        QCOMPARE(scene.range(), QString("2-30"));
        QCOMPARE(scene.frames(0), QString("0 2 16 30"));
    }

    void escapeTakesEachOfThemBack_data() {
        QTest::addColumn<int>("grip");
        QTest::newRow("middle") << 0;
        QTest::newRow("start") << -1;
        QTest::newRow("end") << 1;
    }
    void escapeTakesEachOfThemBack() {
        QFETCH(int, grip);
        TimelineScene scene;
        scene.setRange(10, 30);
        const QPoint from = grip < 0   ? scene.onRangeStart()
                            : grip > 0 ? scene.onRangeEnd()
                                       : scene.inLane(20);
        checkNothingHappens(scene, [&scene, &from] {
            const auto before = scene.state();
            scene.pull(from, from + scene.wide(7));
            QVERIFY(!scene.changesSince(before).isEmpty());
            scene.type(Qt::Key_Escape);
            scene.release(from + scene.wide(7));
        });
    }

    void aRangeThatIsUndoneAfterThePressIsNotDragged_data() {
        QTest::addColumn<int>("grip");
        QTest::newRow("middle") << 0;
        QTest::newRow("start") << -1;
        QTest::newRow("end") << 1;
    }
    void aRangeThatIsUndoneAfterThePressIsNotDragged() {
        QFETCH(int, grip);
        TimelineScene scene;
        scene.dragBetween(scene.inLane(20), scene.inLane(50));
        const QPoint from = grip < 0   ? scene.onRangeStart()
                            : grip > 0 ? scene.onRangeEnd()
                                       : scene.inLane(35);
        const QPoint to = from + scene.wide(grip < 0 ? -7 : 7);
        scene.press(from);
        scene.history().undo();
        QVERIFY(!scene.markers().isRangeVisible());
        checkNothingHappens(scene, [&scene, &to] {
            scene.moveTo(to);
            QVERIFY(!scene.drag.isActive());
            scene.release(to);
        });
    }

    void aBlockedStretchWaitsAndLosesNoKey() {
        TimelineScene scene;
        scene.add(0, {5, 12});
        scene.setRange(10, 20);
        const auto keys = keysOf(scene.curve(0));
        const auto before = scene.state();
        scene.press(scene.onRangeStart());
        bool wasBlocked = false;
        for (int i = 1; i <= 9; ++i) {
            scene.moveTo(scene.inLane(10 - i) - QPoint(2, 0));
            QCOMPARE(keysOf(scene.curve(0)), keys);
            wasBlocked = wasBlocked || (!scene.blocked.isEmpty() && !scene.blocked.last().isEmpty());
        }
        QVERIFY(wasBlocked);
        scene.release(scene.inLane(1) - QPoint(2, 0));
        QCOMPARE(keysOf(scene.curve(0)), keys);
        QVERIFY(scene.history().count() <= 1);
        scene.history().undo();
        QCOMPARE(scene.changesSince(before), QString());
    }

    void keysOfLockedAndHiddenLayersStay() {
        TimelineScene scene;
        scene.setRange(8, 22);
        scene.lock(0);
        scene.hide(1);
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(15), scene.inLane(45)); });
        QCOMPARE(scene.frames(0), QString("0 10 20 30"));
        QCOMPARE(scene.frames(1), QString("10 40"));
        QCOMPARE(scene.frames(2), QString("40 60"));
    }

    void aRangeOfOneFrameHasAMiddleAndTwoEnds() {
        TimelineScene scene;
        scene.setRange(20, 20);
        scene.dragBetween(scene.inLane(20), scene.inLane(25));
        QCOMPARE(scene.range(), QString("25-25"));
        scene.dragBetween(scene.onRangeEnd(), scene.onRangeEnd() + scene.wide(5));
        QCOMPARE(scene.range(), QString("25-30"));
        scene.history().undo();
        scene.dragBetween(scene.onRangeStart(), scene.onRangeStart() - scene.wide(5));
        QCOMPARE(scene.range(), QString("20-25"));
    }

    void aHiddenRangeIsNotGrabbed() {
        TimelineScene scene;
        scene.setRange(8, 22);
        scene.markers().setRangeVisible(false);
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(15), scene.inLane(45)); });
        QCOMPARE(scene.range(), QString("15-45"));
        QCOMPARE(scene.frames(0), QString("0 10 20 30"));
    }

    void aDragInTheLaneWithoutLayersMakesARange() {
        TimelineScene scene(QStringList{});
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(15), scene.inLane(45)); });
        QCOMPARE(scene.range(), QString("15-45"));
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inLane(30), scene.inLane(50)); });
        QCOMPARE(scene.range(), QString("35-65"));
    }
};

QTEST_MAIN(TimelineRangeTest)
#include "TimelineRangeTest.moc"
