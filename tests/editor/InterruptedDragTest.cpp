#include "document/KeyEdits.h"
#include "document/LayerCommands.h"
#include "tests/editor/support/Gesture.h"

using Editor::dragKeys;
using EditorScene::Gesture;
using EditorScene::Key;
using EditorScene::Keys;
using EditorScene::Scene;

class InterruptedDragTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beginningFinishesTheDragBefore();
    void anotherEditFinishesTheDrag();
    void undoDuringADragUndoesIt();
    void redoDuringADragFinishesIt();
    void aJumpInTheHistoryDuringADragFinishesItFirst();
    void theDocumentIsModifiedWhileADragHasMovedSomething();
    void aDragThatGoesAwayIsFinished();
    void savingDuringADragFinishesIt();
    void anotherAnimationForgetsTheDrag();
    void removingTheLayerOfADragForgetsIt();
};

void InterruptedDragTest::beginningFinishesTheDragBefore() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.frames(), QString("7"));
    QCOMPARE(scene.history().count(), 1);
    QCOMPARE(gesture.active, (QList<bool>{true, false, true, false}));
}

void InterruptedDragTest::anotherEditFinishesTheDrag() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Key* const other = *scene.add(1, {5}).begin();
    Gesture gesture(scene);
    const DocumentState before = scene.state();
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    Editor::KeyEdits(scene.document).setValue({other}, 3.0F);
    QVERIFY(!gesture.drag.isActive());
    gesture.drag.moveTo({9, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.frames(), QString("7"));
    QCOMPARE(scene.history().count(), 2);
    scene.history().undo();
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
}

void InterruptedDragTest::undoDuringADragUndoesIt() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    const DocumentState before = scene.state();
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
    QVERIFY(!gesture.drag.isActive());
    gesture.drag.moveTo({4, 0});
    gesture.drag.finish();
    QCOMPARE(scene.changesSince(before), QString());
    scene.history().redo();
    QCOMPARE(scene.frames(), QString("7"));
}

void InterruptedDragTest::redoDuringADragFinishesIt() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    const DocumentState before = scene.state();
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({9, 0});
    gesture.drag.finish();
    scene.history().undo();
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    scene.history().redo();
    QVERIFY(!gesture.drag.isActive());
    QCOMPARE(scene.frames(), QString("7"));
    QCOMPARE(scene.history().count(), 1);
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
}

void InterruptedDragTest::aJumpInTheHistoryDuringADragFinishesItFirst() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    const DocumentState before = scene.state();
    for (int i = 0; i < 3; ++i) {
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({2, 1});
        if (i < 2) {
            gesture.drag.finish();
        }
    }
    const DocumentState after = scene.state();
    scene.history().setIndex(0);
    QVERIFY(!gesture.drag.isActive());
    QCOMPARE(scene.changesSince(before), QString());
    scene.history().setIndex(3);
    QCOMPARE(scene.changesSince(after), QString());
}

void InterruptedDragTest::theDocumentIsModifiedWhileADragHasMovedSomething() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    const QSignalSpy changes(&scene.document, &Editor::Document::pathChanged);
    gesture.drag.begin(dragKeys(keys));
    QVERIFY(!scene.document.isModified());
    gesture.drag.moveTo({2, 0});
    QVERIFY(scene.document.isModified());
    QCOMPARE(changes.size(), 1);
    gesture.drag.moveTo({0, 0});
    QVERIFY(!scene.document.isModified());
    gesture.drag.moveTo({3, 0});
    gesture.drag.cancel();
    QVERIFY(!scene.document.isModified());
    QCOMPARE(changes.size(), 4);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({3, 0});
    gesture.drag.finish();
    scene.history().undo();
    QVERIFY(!scene.document.isModified());
}

void InterruptedDragTest::aDragThatGoesAwayIsFinished() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    EditorScene::checkEdit(scene, [&] {
        Gesture gesture(scene);
        gesture.drag.begin(dragKeys(keys));
        gesture.drag.moveTo({2, 0});
    });
    QCOMPARE(scene.frames(), QString("7"));
}

void InterruptedDragTest::savingDuringADragFinishesIt() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    scene.document.setSaved("a.xml");
    QVERIFY(!gesture.drag.isActive());
    gesture.drag.moveTo({4, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.frames(), QString("7"));
    QVERIFY(!scene.document.isModified());
    QCOMPARE(scene.history().count(), 1);
    QVERIFY(scene.history().isClean());
}

void InterruptedDragTest::anotherAnimationForgetsTheDrag() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    for (const bool hasMoved : {true, false}) {
        Gesture gesture(scene);
        gesture.drag.begin(dragKeys(hasMoved ? keys : scene.add(0, {5})));
        if (hasMoved) {
            gesture.drag.moveTo({2, 0});
        }
        scene.document.replace(EditorScene::animationOf({"other"}), QString());
        QVERIFY(!gesture.drag.isActive());
        QCOMPARE(gesture.active, (QList<bool>{true, false}));
        gesture.drag.moveTo({4, 0});
        gesture.drag.finish();
        QCOMPARE(scene.history().count(), 0);
        QCOMPARE(scene.frames(), QString());
    }
}

void InterruptedDragTest::removingTheLayerOfADragForgetsIt() {
    Scene scene;
    const Keys keys = scene.add(0, {5});
    const DocumentState before = scene.state();
    Gesture gesture(scene);
    gesture.drag.begin(dragKeys(keys));
    gesture.drag.moveTo({2, 0});
    scene.history().push(new Editor::RemoveLayerCommand(scene.document, 0));
    gesture.drag.moveTo({4, 0});
    gesture.drag.cancel();
    QCOMPARE(scene.document.layerCount(), 2);
    scene.history().undo();
    QCOMPARE(scene.frames(), QString("7"));
    scene.history().undo();
    QCOMPARE(scene.changesSince(before), QString());
}

QTEST_GUILESS_MAIN(InterruptedDragTest)
#include "InterruptedDragTest.moc"
