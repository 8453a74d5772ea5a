#include "TimelineScene.h"

class TimelineSelectionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aClickSelectsThatKeyAlone() {
        TimelineScene scene;
        scene.click(scene.inRow(0, 10));
        QCOMPARE(scene.selected(), QString("arm@10"));
        scene.click(scene.inRow(1, 40));
        QCOMPARE(scene.selected(), QString("leg@40"));
        QCOMPARE(scene.history().count(), 0);
    }

    void aShiftClickAddsAKeyAndTakesItAway() {
        TimelineScene scene;
        scene.click(scene.inRow(0, 10));
        scene.click(scene.inRow(1, 40), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("arm@10 leg@40"));
        scene.click(scene.inRow(0, 10), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("leg@40"));
    }

    void aDoubleClickWithShiftAddsAKeyAndTakesItAway() {
        TimelineScene scene;
        scene.select(1, {40});
        scene.click(scene.inRow(0, 10), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("arm@10 leg@40"));
        scene.pressAgain(scene.inRow(0, 10), Qt::ShiftModifier);
        scene.release(scene.inRow(0, 10), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("leg@40"));
    }

    void aClickOnOneOfManySelectedKeysLeavesItAlone() {
        TimelineScene scene;
        scene.select(0, {10, 20});
        scene.press(scene.inRow(0, 10));
        QCOMPARE(scene.selected(), QString("arm@10 arm@20")); // They may be about to be dragged.
        scene.release(scene.inRow(0, 10));
        QCOMPARE(scene.selected(), QString("arm@10"));
    }

    void aClickBesideAllKeysDeselects() {
        TimelineScene scene;
        scene.select(0, {10});
        scene.click(scene.inRow(0, 15));
        QCOMPARE(scene.selected(), QString());
    }

    void ofKeysThatStandCloseTheNearestIsMeant() {
        TimelineScene scene;
        scene.add(0, {11});
        scene.axis->show(0.0, 400.0); // Less than two pixels for each frame.
        scene.click(scene.inRow(0, 11));
        QCOMPARE(scene.selected(), QString("arm@11"));
    }

    void aRubberBandSelectsTheKeysOfItsRowsAndFrames_data() {
        QTest::addColumn<int>("fromRow");
        QTest::addColumn<double>("from");
        QTest::addColumn<int>("toRow");
        QTest::addColumn<double>("to");
        QTest::addColumn<QString>("selected");
        QTest::newRow("two rows") << 0 << 5.0 << 1 << 25.0 << "arm@10 arm@20 leg@10";
        QTest::newRow("upwards and to the left") << 1 << 25.0 << 0 << 5.0 << "arm@10 arm@20 leg@10";
        QTest::newRow("one row") << 2 << 5.0 << 2 << 65.0 << "head@10 head@60";
        QTest::newRow("between keys") << 0 << 12.0 << 2 << 18.0 << "";
        QTest::newRow("from before frame 0") << 0 << -8.0 << 0 << 5.0 << "arm@0";
        QTest::newRow("wholly before frame 0") << 0 << -8.0 << 2 << -3.0 << "";
    }
    void aRubberBandSelectsTheKeysOfItsRowsAndFrames() {
        QFETCH(int, fromRow);
        QFETCH(double, from);
        QFETCH(int, toRow);
        QFETCH(double, to);
        QFETCH(QString, selected);
        TimelineScene scene;
        scene.select(2, {60});
        scene.dragBetween(scene.inRow(fromRow, from), scene.inRow(toRow, to));
        QCOMPARE(scene.selected(), selected);
        QCOMPARE(scene.history().count(), 0);
    }

    void aRubberBandWithShiftAdds() {
        TimelineScene scene;
        scene.select(2, {60});
        scene.dragBetween(scene.inRow(0, 5), scene.inRow(0, 15), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("arm@10 head@60"));
    }

    void aRubberBandOnTheSummarySelectsInAllLayers() {
        TimelineScene scene;
        scene.dragBetween(scene.onSummary(5), scene.onSummary(25));
        QCOMPARE(scene.selected(), QString("arm@10 arm@20 head@10 leg@10"));
    }

    void aRubberBandFromARowDoesNotReachTheSummaryNorRowsOutOfSight() {
        TimelineScene scene(
            {"arm", "leg", "head", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n", "o"});
        for (int layer = 0; layer < 15; ++layer) {
            scene.add(layer, {10});
        }
        scene.view.setCurrentLayer(14);
        const int first = scene.view.parts().firstLayer();
        QVERIFY(first > 0);
        scene.dragBetween(scene.inRow(14, 5), scene.inRuler(15));
        for (int layer = 0; layer < 15; ++layer) {
            QCOMPARE(scene.document.selection().contains(scene.key(layer, 10)), layer >= first);
        }
    }

    void theRubberBandCanBeSeen() {
        TimelineScene scene;
        const QImage before = scene.view.grab().toImage();
        scene.pull(scene.inRow(0, 52), scene.inRow(2, 58));
        QVERIFY(scene.view.grab().toImage() != before);
        scene.type(Qt::Key_Escape);
        QVERIFY(scene.view.grab().toImage() == before);
    }

    void inAViewThatHasBecomeTooLowForRowsARubberBandSelectsNothing() {
        TimelineScene scene;
        const QPoint to = scene.inRow(1, 25);
        scene.pull(scene.inRow(0, 5), to);
        scene.view.resize(900, scene.view.parts().summary().bottom());
        QVERIFY(scene.view.parts().rows().isEmpty());
        scene.moveTo(to);
        scene.view.grab();
        scene.release(to);
        QCOMPARE(scene.selected(), QString());
    }

    void escapeTakesARubberBandBackAndThenDeselects() {
        TimelineScene scene;
        scene.select(0, {20});
        scene.pull(scene.inRow(0, 5), scene.inRow(1, 25));
        scene.type(Qt::Key_Escape);
        scene.release(scene.inRow(1, 25));
        QCOMPARE(scene.selected(), QString("arm@20"));
        scene.type(Qt::Key_Escape);
        QCOMPARE(scene.selected(), QString());
    }

    void aClickOnTheSummarySelectsAllKeysOfTheFrame() {
        TimelineScene scene;
        scene.click(scene.onSummary(10));
        QCOMPARE(scene.selected(), QString("arm@10 head@10 leg@10"));
        scene.click(scene.onSummary(60));
        QCOMPARE(scene.selected(), QString("head@60"));
    }

    void aShiftClickOnTheSummaryAddsTheFramesKeysAndTakesThemAway() {
        TimelineScene scene;
        scene.select(0, {10, 20});
        scene.click(scene.onSummary(10), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("arm@10 arm@20 head@10 leg@10"));
        scene.click(scene.onSummary(10), Qt::ShiftModifier);
        QCOMPARE(scene.selected(), QString("arm@20"));
    }

    void keysOfLockedAndHiddenLayersAreNotSelected() {
        TimelineScene scene;
        scene.lock(0);
        scene.hide(1);
        scene.click(scene.inRow(0, 10));
        QCOMPARE(scene.selected(), QString());
        scene.click(scene.inRow(1, 10));
        QCOMPARE(scene.selected(), QString());
        scene.click(scene.onSummary(10));
        QCOMPARE(scene.selected(), QString("head@10"));
        scene.click(scene.onSummary(20)); // Only a locked layer has a key there.
        QCOMPARE(scene.selected(), QString());
        scene.dragBetween(scene.inRow(0, 5), scene.inRow(2, 65));
        QCOMPARE(scene.selected(), QString("head@10 head@60"));
        scene.dragBetween(scene.onSummary(5), scene.onSummary(65));
        QCOMPARE(scene.selected(), QString("head@10 head@60"));
    }

    void aClickOnANameMakesTheLayerTheCurrentOne() {
        TimelineScene scene;
        QSignalSpy spy(&scene.view, &Editor::TimelineView::currentLayerChanged);
        scene.click(scene.onName(1));
        QCOMPARE(scene.view.currentLayer(), 1);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.takeFirst().at(0).toInt(), 1);
        scene.click(scene.onName(1));
        QCOMPARE(spy.count(), 0);
        scene.click(scene.view.parts().nameBeside(scene.view.parts().summary()).center());
        QCOMPARE(scene.view.currentLayer(), -1);
        QCOMPARE(spy.takeFirst().at(0).toInt(), -1);
    }

    void theCurrentLayerStaysTheSameWhenOthersComeAndGo() {
        TimelineScene scene;
        scene.view.setCurrentLayer(1);
        scene.document.moveLayer(0, 2);
        QCOMPARE(scene.view.currentLayer(), 0);
        std::unique_ptr<ZT::EditableAnimationLayer> taken;
        Editor::LayerLook look;
        scene.document.takeLayer(0, taken, look);
        QCOMPARE(scene.view.currentLayer(), -1);
    }

    void thePointerIsToldWhatItIsOver() {
        TimelineScene scene;
        scene.lock(1);
        scene.setRange(70, 80);
        const auto over = [&scene](const QPoint& point) {
            scene.moveTo(point, Qt::NoButton);
            return scene.hovered;
        };
        QCOMPARE(over(scene.inRow(0, 20)), QString("arm, frame 20, value 20"));
        QCOMPARE(over(scene.inRow(0, 15)), QString("arm, frame 15"));
        QCOMPARE(over(scene.inRow(1, 10)), QString("leg (locked), frame 10"));
        QCOMPARE(over(scene.onSummary(10)), QString("Frame 10, 2 key(s)"));
        QCOMPARE(over(scene.inRuler(33)), QString("Frame 33"));
        QCOMPARE(over(scene.onStart()), QString("Start marker at frame 1"));
        QCOMPARE(over(scene.onEnd()), QString("End marker at frame 100"));
        QCOMPARE(over(scene.inLane(75)), QString("Range from frame 70 to 80: drag it or its ends"));
        QCOMPARE(over(scene.inLane(30)), QString("Frame 30: drag to make a range"));
        QCOMPARE(over(scene.onName(2)), QString("head"));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(scene.view.viewport(), &leave);
        QCOMPARE(scene.hovered, QString());
    }
};

QTEST_MAIN(TimelineSelectionTest)
#include "TimelineSelectionTest.moc"
