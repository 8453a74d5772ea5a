#include "document/KeySelection.h"

#include "document/KeyEdits.h"
#include "tests/editor/support/Scene.h"

#include <QSignalSpy>

using namespace EditorScene;
using Editor::KeySelection;

class KeySelectionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysAreSetAddedAndToggled();
    void onlyAnotherSelectionIsAnnounced();
    void keysThatMayNotBeEditedAreNotSelected();
    void allAndTheOthersCanBeSelected();
    void aKeyThatLeavesIsSelectedNoMore();
    void aKeyThatMovesStaysSelected();
    void forgettingTouchesNoKey();
};

void KeySelectionTest::keysAreSetAddedAndToggled() {
    Scene scene;
    const Keys some = scene.add(0, {1, 2});
    const Keys others = scene.add(1, {1});
    KeySelection& selection = scene.document.selection();
    selection.set(some);
    QCOMPARE(selection.keys(), some);
    selection.add(others);
    QCOMPARE(selection.keys(), some + others);
    QVERIFY(selection.contains(scene.key(1, 1)));
    selection.toggle(some);
    QCOMPARE(selection.keys(), others);
    selection.toggle(some + others);
    QCOMPARE(selection.keys(), some);
    selection.clear();
    QVERIFY(selection.isEmpty());
}

void KeySelectionTest::onlyAnotherSelectionIsAnnounced() {
    Scene scene;
    const Keys keys = scene.add(0, {1, 2});
    KeySelection& selection = scene.document.selection();
    const QSignalSpy changes(&selection, &KeySelection::changed);
    selection.clear();
    selection.set(keys);
    selection.set(keys);
    selection.add(keys);
    selection.toggle({});
    selection.prune();
    QCOMPARE(changes.count(), 1);
    selection.clear();
    QCOMPARE(changes.count(), 2);
    selection.forget();
    QCOMPARE(changes.count(), 2);
}

void KeySelectionTest::keysThatMayNotBeEditedAreNotSelected() {
    Scene scene;
    const Keys free = scene.add(0, {1});
    const Keys locked = scene.add(1, {1});
    const Keys hidden = scene.add(2, {1});
    scene.lock(1);
    scene.hide(2);
    Key loose;
    KeySelection& selection = scene.document.selection();
    selection.set(free + locked + hidden + Keys{&loose});
    QCOMPARE(selection.keys(), free);
    selection.toggle(locked);
    QCOMPARE(selection.keys(), free);
}

void KeySelectionTest::allAndTheOthersCanBeSelected() {
    Scene scene;
    const Keys free = scene.add(0, {1, 2}) + scene.add(1, {7});
    scene.add(2, {1});
    scene.lock(2);
    KeySelection& selection = scene.document.selection();
    selection.selectAll();
    QCOMPARE(selection.keys(), free);
    selection.set({scene.key(1, 7)});
    selection.invert();
    QCOMPARE(selection.keys(), (Keys{scene.key(0, 1), scene.key(0, 2)}));
    selection.selectAll();
    selection.invert();
    QVERIFY(selection.isEmpty());
}

void KeySelectionTest::aKeyThatLeavesIsSelectedNoMore() {
    Scene scene;
    scene.add(0, {1, 2, 3, 4});
    KeySelection& selection = scene.document.selection();
    selection.selectAll();
    scene.curve().remove(1U);
    const std::unique_ptr<Key> released(scene.curve().release(2));
    Editor::KeyEdits(scene.document).remove({scene.key(0, 3)});
    QCOMPARE(selection.keys(), Keys{scene.key(0, 4)});
    scene.history().undo();
    QCOMPARE(selection.keys(), Keys{scene.key(0, 4)});
}

void KeySelectionTest::aKeyThatMovesStaysSelected() {
    Scene scene;
    Key* const key = *scene.add(0, {1}).begin();
    scene.document.selection().set({key});
    scene.curve().moveKeys({{key, QPointF(9, 9)}});
    scene.curve().reorganizeKeys({{key, 20U}});
    QVERIFY(scene.document.selection().contains(key));
}

void KeySelectionTest::forgettingTouchesNoKey() {
    Scene scene;
    auto* const key = new Key;
    scene.curve().insert(1, key);
    KeySelection& selection = scene.document.selection();
    selection.set({key});
    const QSignalSpy changes(&selection, &KeySelection::changed);
    scene.curve().clear(); // Destroys keys without a word of each.
    selection.forget();
    QVERIFY(selection.isEmpty());
    QCOMPARE(changes.count(), 1);
}

QTEST_GUILESS_MAIN(KeySelectionTest)
#include "KeySelectionTest.moc"
