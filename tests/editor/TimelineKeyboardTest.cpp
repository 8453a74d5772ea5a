#include "TimelineScene.h"

#include <QScrollBar>

using EditorScene::checkEdit;
using EditorScene::checkNothingHappens;

class TimelineKeyboardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void arrowsMoveTheSelectedKeys_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("frames");
        QTest::newRow("right") << int(Qt::Key_Right) << int(Qt::NoModifier) << "11 41";
        QTest::newRow("left") << int(Qt::Key_Left) << int(Qt::NoModifier) << "9 39";
        QTest::newRow("shift and right") << int(Qt::Key_Right) << int(Qt::ShiftModifier) << "20 50";
        QTest::newRow("shift and left") << int(Qt::Key_Left) << int(Qt::ShiftModifier) << "0 30";
    }
    void arrowsMoveTheSelectedKeys() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, frames);
        TimelineScene scene;
        scene.select(1, {10, 40});
        checkEdit(scene, [&] { scene.type(Qt::Key(key), Qt::KeyboardModifiers(modifiers)); });
        QCOMPARE(scene.frames(1), frames);
    }

    void eachArrowIsOneEntry() {
        TimelineScene scene;
        scene.select(1, {40});
        scene.type(Qt::Key_Right);
        scene.type(Qt::Key_Right);
        QCOMPARE(scene.history().count(), 2);
        scene.history().undo();
        QCOMPARE(scene.frames(1), QString("10 41"));
    }

    void anArrowThatIsBlockedChangesNothingAndSaysWhy() {
        TimelineScene scene;
        scene.add(1, {41});
        scene.select(1, {40});
        checkNothingHappens(scene, [&scene] { scene.type(Qt::Key_Right); });
        QCOMPARE(scene.blocked,
                 (QStringList{"Frame 41 of leg is taken by a key that is not dragged.", QString()}));
    }

    void withoutSelectedKeysArrowsMoveTheCurrentFrame() {
        TimelineScene scene;
        scene.type(Qt::Key_Right);
        QCOMPARE(scene.currentFrame(), 2U);
        scene.type(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(scene.currentFrame(), 12U);
        scene.type(Qt::Key_Left);
        QCOMPARE(scene.currentFrame(), 11U);
        scene.type(Qt::Key_Left, Qt::ShiftModifier);
        scene.type(Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(scene.currentFrame(), 0U);
        QCOMPARE(scene.history().count(), 0);
    }

    void arrowsDuringAGestureAreIgnored() {
        TimelineScene scene;
        checkEdit(scene, [&scene] {
            scene.pull(scene.inRow(0, 20), scene.inRow(0, 25));
            scene.type(Qt::Key_Right);
            scene.release(scene.inRow(0, 25));
        });
        QCOMPARE(scene.frames(0), QString("0 10 25 30"));
    }

    void startAndEndMarkerAreGoneTo() {
        TimelineScene scene;
        scene.markers().setStartIndex(5);
        scene.view.goToEnd();
        QCOMPARE(scene.currentFrame(), 100U);
        scene.view.goToStart();
        QCOMPARE(scene.currentFrame(), 5U);
    }

    void stepsGoFromKeyToKeyOfAllEditableLayers() {
        TimelineScene scene;
        scene.lock(1); // Its key at 40 does not count.
        QList<unsigned int> visited;
        for (int i = 0; i < 6; ++i) {
            scene.view.goToNextKey();
            visited.append(scene.currentFrame());
        }
        QCOMPARE(visited, (QList<unsigned int>{10, 20, 30, 60, 60, 60}));
        visited.clear();
        for (int i = 0; i < 5; ++i) {
            scene.view.goToPreviousKey();
            visited.append(scene.currentFrame());
        }
        QCOMPARE(visited, (QList<unsigned int>{30, 20, 10, 0, 0}));
    }

    void stepsGoFromKeyToKeyOfTheCurrentLayer() {
        TimelineScene scene;
        scene.view.setCurrentLayer(1);
        scene.view.goToNextKey();
        QCOMPARE(scene.currentFrame(), 10U);
        scene.view.goToNextKey();
        QCOMPARE(scene.currentFrame(), 40U);
        scene.view.goToPreviousKey();
        QCOMPARE(scene.currentFrame(), 10U);
    }

    void theCurrentFrameIsBroughtIntoSight() {
        TimelineScene scene;
        scene.axis->show(200.0, 300.0);
        scene.view.goToEnd();
        QCOMPARE(scene.currentFrame(), 100U);
        QVERIFY(scene.axis->first() <= 100.0 && scene.axis->last() >= 100.0);
        QCOMPARE(scene.axis->span(), 100.0);
    }

    void upAndDownGoToOtherLayersAndScroll() {
        QStringList names;
        for (int i = 0; i < 40; ++i) {
            names.append(QString::number(i));
        }
        TimelineScene scene(names);
        scene.type(Qt::Key_Down);
        QCOMPARE(scene.view.currentLayer(), 0);
        for (int i = 0; i < 50; ++i) {
            scene.type(Qt::Key_Down);
        }
        QCOMPARE(scene.view.currentLayer(), 39);
        QVERIFY(scene.view.parts().rows().contains(scene.inRow(39, 0)));
        for (int i = 0; i < 50; ++i) {
            scene.type(Qt::Key_Up);
        }
        QCOMPARE(scene.view.currentLayer(), 0);
        QVERIFY(scene.view.parts().rows().contains(scene.inRow(0, 0)));
    }

    void returnSelectsTheKeysAtTheCurrentFrame() {
        TimelineScene scene;
        scene.markers().setSelectedIndex(10);
        scene.type(Qt::Key_Return);
        QCOMPARE(scene.selected(), QString("arm@10 head@10 leg@10"));
        scene.view.setCurrentLayer(1);
        scene.type(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("arm@10 head@10"));
        scene.type(Qt::Key_Return);
        QCOMPARE(scene.selected(), QString("leg@10"));
        scene.lock(1);
        scene.type(Qt::Key_Return);
        QCOMPARE(scene.selected(), QString());
    }

    void whatIsACommandOfTheWindowIsLeftToIt() {
        TimelineScene scene;
        scene.select(1, {40});
        checkNothingHappens(scene, [&scene] {
            for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier}) {
                scene.type(Qt::Key_Left, modifier);
                scene.type(Qt::Key_Right, modifier);
            }
            for (const Qt::Key which : {Qt::Key_Home, Qt::Key_End, Qt::Key_Plus, Qt::Key_Minus}) {
                scene.type(which);
            }
        });
        QCOMPARE(scene.axis->span(), 120.0);
        QCOMPARE(scene.currentFrame(), 1U);
    }

    void theWheelWithControlZoomsAtThePointer() {
        TimelineScene scene;
        const QPoint point = scene.inRow(0, 70);
        scene.turnWheel(point, {0, 120}, Qt::ControlModifier);
        QVERIFY(scene.axis->span() < 119.0);
        QVERIFY(qAbs(scene.view.parts().x(70) - point.x()) <= 1);
        scene.turnWheel(point, {0, -120}, Qt::ControlModifier);
        QVERIFY(qAbs(scene.axis->span() - 120.0) < 1e-6);
    }

    void theWheelScrollsTheRowsAndSidewaysTheFrames() {
        QStringList names;
        for (int i = 0; i < 40; ++i) {
            names.append(QString::number(i));
        }
        TimelineScene scene(names);
        QCOMPARE(scene.view.parts().firstLayer(), 0);
        scene.turnWheel(scene.inRow(0, 10), {0, -240});
        QVERIFY(scene.view.parts().firstLayer() > 0);
        QCOMPARE(scene.axis->first(), -10.0);
        scene.turnWheel(scene.inRuler(10), {-120, 0});
        QVERIFY(scene.axis->first() > -10.0);
        QVERIFY(qAbs(scene.axis->span() - 120.0) < 1e-9);
    }

    void theMiddleButtonPansBothWays() {
        QStringList names;
        for (int i = 0; i < 40; ++i) {
            names.append(QString::number(i));
        }
        TimelineScene scene(names);
        const QPoint from = scene.inRow(4, 50);
        scene.dragBetween(from, from + QPoint(-100, -30), {}, Qt::MiddleButton);
        QVERIFY(qAbs(scene.view.parts().x(50) - (from.x() - 100)) <= 1);
        QCOMPARE(scene.view.verticalScrollBar()->value(), 30);
        scene.moveTo(from, Qt::NoButton);
        QCOMPARE(scene.view.verticalScrollBar()->value(), 30);
        QCOMPARE(scene.selected(), QString());
    }
};

QTEST_MAIN(TimelineKeyboardTest)
#include "TimelineKeyboardTest.moc"
