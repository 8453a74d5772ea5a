#include "TimelineScene.h"

#include <limits>

using EditorScene::checkNothingHappens;

class TimelineMarkersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theCurrentFrameFollowsThePointerInTheRuler() {
        TimelineScene scene;
        scene.press(scene.inRuler(20));
        QCOMPARE(scene.currentFrame(), 20U);
        scene.moveTo(scene.inRuler(45));
        QCOMPARE(scene.currentFrame(), 45U);
        QCOMPARE(scene.hovered, QString("Frame 45"));
        scene.moveTo({scene.inRuler(50).x(), 300}); // Also outside.
        QCOMPARE(scene.currentFrame(), 50U);
        scene.release(scene.inRuler(52));
        QCOMPARE(scene.currentFrame(), 52U);
        scene.moveTo(scene.inRuler(70), Qt::NoButton);
        QCOMPARE(scene.currentFrame(), 52U);
        QCOMPARE(scene.history().count(), 0);
    }

    void theCurrentFrameStaysAmongTheFramesThatThereAre() {
        TimelineScene scene;
        scene.dragBetween(scene.inRuler(5), scene.inRuler(-9));
        QCOMPARE(scene.currentFrame(), 0U);
        constexpr double last = std::numeric_limits<unsigned int>::max();
        scene.axis->show(last - 50.0, last + 50.0);
        scene.click(scene.inRuler(last + 30.0));
        QCOMPARE(scene.currentFrame(), std::numeric_limits<unsigned int>::max());
    }

    void escapeGivesTheCurrentFrameBack() {
        TimelineScene scene;
        scene.markers().setSelectedIndex(7);
        scene.pull(scene.inRuler(20), scene.inRuler(45));
        scene.type(Qt::Key_Escape);
        scene.moveTo(scene.inRuler(50));
        scene.release(scene.inRuler(50));
        QCOMPARE(scene.currentFrame(), 7U);
    }

    void theHandlesMoveStartAndEndWithoutTheHistory() {
        TimelineScene scene;
        scene.dragBetween(scene.onStart(), scene.onStart() + scene.wide(9));
        QCOMPARE(scene.markers().startIndex(), 10U);
        scene.dragBetween(scene.onEnd(), scene.onEnd() - scene.wide(30));
        QCOMPARE(scene.markers().endIndex(), 70U);
        QCOMPARE(scene.currentFrame(), 1U);
        QCOMPARE(scene.history().count(), 0);
    }

    void aClickOnAHandleMovesNothing() {
        TimelineScene scene;
        checkNothingHappens(scene, [&scene] {
            scene.click(scene.onStart());
            scene.click(scene.onEnd());
        });
    }

    void neitherMarkerPushesTheOther() {
        TimelineScene scene;
        scene.markers().setStartIndex(40);
        scene.markers().setEndIndex(60);
        scene.dragBetween(scene.onStart(), scene.onStart() + scene.wide(40));
        QCOMPARE(scene.markers().startIndex(), 60U);
        QCOMPARE(scene.markers().endIndex(), 60U);
        scene.markers().setStartIndex(40);
        scene.dragBetween(scene.onEnd(), scene.onEnd() - scene.wide(40));
        QCOMPARE(scene.markers().startIndex(), 40U);
        QCOMPARE(scene.markers().endIndex(), 40U);
    }

    void bothCanBeGrabbedWhereTheyMeet() {
        TimelineScene scene;
        scene.markers().setStartIndex(50);
        scene.markers().setEndIndex(50);
        scene.dragBetween(scene.onStart(), scene.onStart() - scene.wide(10));
        QCOMPARE(scene.markers().startIndex(), 40U);
        QCOMPARE(scene.markers().endIndex(), 50U);
        scene.dragBetween(scene.onEnd(), scene.onEnd() + scene.wide(10));
        QCOMPARE(scene.markers().startIndex(), 40U);
        QCOMPARE(scene.markers().endIndex(), 60U);
    }

    void aMarkerStopsAtFrameZero() {
        TimelineScene scene;
        scene.dragBetween(scene.onStart(), scene.onStart() - scene.wide(9));
        QCOMPARE(scene.markers().startIndex(), 0U);
    }

    void escapeGivesEachMarkerBack() {
        TimelineScene scene;
        scene.pull(scene.onStart(), scene.onStart() + scene.wide(9));
        QCOMPARE(scene.markers().startIndex(), 10U);
        scene.type(Qt::Key_Escape);
        scene.release(scene.onStart());
        QCOMPARE(scene.markers().startIndex(), 1U);
        scene.pull(scene.onEnd(), scene.onEnd() - scene.wide(9));
        QCOMPARE(scene.markers().endIndex(), 91U);
        scene.type(Qt::Key_Escape);
        scene.release(scene.onEnd());
        QCOMPARE(scene.markers().endIndex(), 100U);
    }

    void aStartBehindTheEndCanBeDraggedBack() {
        TimelineScene scene;
        scene.markers().setStartIndex(80);
        scene.markers().resetEndFrame(); // 60: the library leaves the start where it is.
        QCOMPARE(scene.markers().endIndex(), 60U);
        scene.pull(scene.onStart(), scene.onStart() - scene.wide(5));
        QCOMPARE(scene.markers().startIndex(), 75U);
    }

    void theMarkersOfAnotherAnimationAreShown() {
        TimelineScene scene;
        scene.document.replace(EditorScene::animationOf({"arm"}), QString());
        const QImage before = scene.view.grab().toImage();
        scene.markers().setSelectedIndex(60);
        QTRY_VERIFY(scene.view.grab().toImage() != before);
        scene.click(scene.inRuler(30));
        QCOMPARE(scene.currentFrame(), 30U);
    }
};

QTEST_MAIN(TimelineMarkersTest)
#include "TimelineMarkersTest.moc"
