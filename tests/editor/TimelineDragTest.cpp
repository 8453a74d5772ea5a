#include "TimelineScene.h"

using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;

class TimelineDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDraggedKeyMovesInTimeAsOneEntry() {
        TimelineScene scene;
        const EditorScene::Key* const key = scene.key(0, 20);
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inRow(0, 20), scene.inRow(2, 26)); });
        QCOMPARE(scene.frames(0), QString("0 10 26 30"));
        QCOMPARE(key->getValue(), 20.0F);
        QCOMPARE(scene.selected(), QString("arm@26"));
    }

    void theSecondOfTwoQuickPressesDragsAsWell() {
        TimelineScene scene;
        checkEdit(scene, [&scene] {
            scene.click(scene.inRow(0, 20));
            scene.pressAgain(scene.inRow(0, 20));
            scene.moveTo(scene.inRow(0, 23));
            scene.moveTo(scene.inRow(0, 26));
            scene.release(scene.inRow(0, 26));
        });
        QCOMPARE(scene.frames(0), QString("0 10 26 30"));
        QCOMPARE(scene.selected(), QString("arm@26"));
    }

    // A dialog that opens in the middle of a gesture takes the release.
    void aMoveWithoutTheButtonEndsTheGestureWhereItWas() {
        TimelineScene scene;
        checkEdit(scene, [&scene] {
            scene.pull(scene.inRow(0, 20), scene.inRow(0, 24));
            scene.moveTo(scene.inRow(0, 27), Qt::NoButton);
            QVERIFY(!scene.drag.isActive());
            scene.moveTo(scene.inRow(0, 28), Qt::RightButton);
            scene.release(scene.inRow(0, 28));
        });
        QCOMPARE(scene.frames(0), QString("0 10 24 30"));
        const double first = scene.axis->first();
        scene.press(scene.inRow(0, 15), {}, Qt::MiddleButton);
        scene.moveTo(scene.inRow(0, 25), Qt::NoButton);
        QCOMPARE(scene.axis->first(), first);
    }

    void allSelectedKeysFollow() {
        TimelineScene scene;
        scene.select(0, {10, 20});
        scene.select(2, {60});
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inRow(0, 20), scene.inRow(0, 25)); });
        QCOMPARE(scene.selected(), QString("arm@15 arm@25 head@65"));
    }

    void theKeysOfASummaryDiamondMoveTogether() {
        TimelineScene scene;
        checkEdit(scene, [&scene] { scene.dragBetween(scene.onSummary(10), scene.onSummary(13)); });
        QCOMPARE(scene.selected(), QString("arm@13 head@13 leg@13"));
    }

    void aKeyThatIsAddedWithShiftTakesTheOthersAlong() {
        TimelineScene scene;
        scene.select(0, {20});
        checkEdit(scene,
                  [&scene] { scene.dragBetween(scene.inRow(1, 40), scene.inRow(1, 44), Qt::ShiftModifier); });
        QCOMPARE(scene.selected(), QString("arm@24 leg@44"));
    }

    void aKeyThatIsTakenOutOfTheSelectionIsNotDragged() {
        TimelineScene scene;
        scene.select(0, {10, 20});
        checkNothingHappens(scene, [&scene] {
            scene.dragBetween(scene.inRow(0, 20), scene.inRow(0, 25), Qt::ShiftModifier);
        });
        QCOMPARE(scene.selected(), QString("arm@10"));
    }

    void keysStopAtFrameZero() {
        TimelineScene scene;
        scene.select(1, {10, 40});
        checkEdit(scene, [&scene] { scene.dragBetween(scene.inRow(1, 40), scene.inRow(1, 5)); });
        QCOMPARE(scene.frames(1), QString("0 30"));
    }

    void aKeyInTheWayBlocksTheDragAndLosesNothing() {
        TimelineScene scene;
        checkEdit(scene, [&scene] {
            scene.pull(scene.inRow(0, 10), scene.inRow(0, 16));
            scene.moveTo(scene.inRow(0, 20));
            QCOMPARE(scene.frames(0), QString("0 16 20 30"));
            QCOMPARE(scene.blocked, QStringList("Frame 20 of arm is taken by a key that is not dragged."));
            scene.moveTo(scene.inRow(0, 22));
            QCOMPARE(scene.blocked.last(), QString());
            scene.release(scene.inRow(0, 22));
        });
        QCOMPARE(scene.frames(0), QString("0 20 22 30"));
    }

    void escapeGivesTheKeysBack() {
        TimelineScene scene;
        checkNothingHappens(scene, [&scene] {
            scene.pull(scene.inRow(0, 20), scene.inRow(0, 26));
            QCOMPARE(scene.frames(0), QString("0 10 26 30"));
            scene.type(Qt::Key_Escape);
            scene.moveTo(scene.inRow(0, 28));
            scene.release(scene.inRow(0, 28));
        });
        QCOMPARE(scene.selected(), QString("arm@20"));
    }

    void aHandThatTremblesMovesNothing() {
        TimelineScene scene;
        scene.axis->show(0.0, 1000.0); // A pixel is more than a frame.
        checkNothingHappens(
            scene, [&scene] { scene.dragBetween(scene.inRow(0, 20), scene.inRow(0, 20) + QPoint(3, 2)); });
    }

    void aDragThatComesBackLeavesNoEntry() {
        TimelineScene scene;
        checkNothingHappens(scene, [&scene] {
            scene.pull(scene.inRow(0, 20), scene.inRow(0, 26));
            scene.moveTo(scene.inRow(0, 20));
            scene.release(scene.inRow(0, 20));
        });
    }

    void keysStayUnderThePointerWhenTheFramesZoomMeanwhile() {
        TimelineScene scene;
        scene.pull(scene.inRow(0, 20), scene.inRow(0, 26));
        scene.turnWheel(scene.inRow(0, 26), {0, 240}, Qt::ControlModifier);
        scene.moveTo(scene.inRow(0, 28));
        scene.release(scene.inRow(0, 28));
        QCOMPARE(scene.frames(0), QString("0 10 28 30"));
        QCOMPARE(scene.history().count(), 1);
    }

    void undoWhileTheButtonIsDownEndsTheDrag() {
        TimelineScene scene;
        const auto before = scene.state();
        scene.pull(scene.inRow(0, 20), scene.inRow(0, 26));
        scene.history().undo();
        scene.moveTo(scene.inRow(0, 28));
        scene.release(scene.inRow(0, 28));
        QCOMPARE(scene.changesSince(before), QString());
    }

    void anotherAnimationEndsTheDrag() {
        TimelineScene scene;
        scene.pull(scene.inRow(0, 20), scene.inRow(0, 26));
        scene.document.replace(EditorScene::animationOf({"arm"}), QString());
        scene.moveTo(scene.inRow(0, 28));
        scene.release(scene.inRow(0, 28));
        QCOMPARE(scene.history().count(), 0);
        QCOMPARE(scene.frames(0), QString());
    }

    void hidingTheViewTakesTheDragBack() {
        TimelineScene scene;
        checkNothingHappens(scene, [&scene] {
            scene.pull(scene.inRow(0, 20), scene.inRow(0, 26));
            scene.view.hide();
        });
        QVERIFY(!scene.drag.isActive());
    }

    void otherButtonsDoNotDisturbADrag() {
        TimelineScene scene;
        checkEdit(scene, [&scene] {
            scene.pull(scene.inRow(0, 20), scene.inRow(0, 24));
            scene.press(scene.inRow(0, 24), {}, Qt::RightButton);
            scene.release(scene.inRow(0, 24), {}, Qt::RightButton);
            scene.moveTo(scene.inRow(0, 26));
            scene.release(scene.inRow(0, 26));
        });
        QCOMPARE(scene.frames(0), QString("0 10 26 30"));
    }
};

QTEST_MAIN(TimelineDragTest)
#include "TimelineDragTest.moc"
